#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/StatusMenuExporter.h"
#include "Platform/Gtk/StatusMenuWindow.h"
#include "Platform/NSEvent.h"
#include "Platform/NSStatusItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gio/gio.h>

namespace platform {

/// The tray icon, as a StatusNotifierItem on the session bus. Main thread.
class StatusNotifierItem : public NSStatusItem {
 public:
  /// What the item finds out about its desktop.
  struct Events {
    /// The tray answered the registration, or it is known that there is none. Once.
    std::function<void()> settled;
    /// It is known, for the moment, whether a tray shows the icon: behind each answer to that question.
    std::function<void()> answered;
    /// There is a tray that shows the icon, or there no longer is.
    std::function<void(bool hasTray)> trayChanged;
  };

  /// `connection` may be nullptr: then there is no tray, ever.
  StatusNotifierItem(double length, GDBusConnection* connection, Events events);
  ~StatusNotifierItem() override;
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

  double length() const override { return length_; }
  NSStatusBarButton* button() override;
  void prepareMenu(std::shared_ptr<NSMenu> menu) override;
  void popUpStatusItemMenu(std::shared_ptr<NSMenu> menu) override;

  bool hasTray() const noexcept { return hasTray_; }
  /// Where the last click was, in device pixels of the root window; (0, 0) if the panel didn't say.
  NSPoint lastClick() const noexcept { return lastClick_; }
  /// The colour of the icon for panels that draw it as it comes: by how bright they are (0 to 1), or, where
  /// that isn't known, one that is seen on all of them.
  void setPanelLuminance(std::optional<double> luminance);
  /// Runs the work when there may be windows; until it is set there is no menu but the panel's.
  std::function<void(std::function<void()>)> whenToolkitReady;
  /// Makes device pixels of what the panel told of a click.
  std::function<NSPoint(NSPoint told)> pixelOfClick;
  /// Asked before a click is passed on; true swallows it.
  std::function<bool()> shouldIgnoreClick;

 private:
  void watchKeys();
  class Button;

  static void onMethodCall(GDBusConnection*, const char* sender, const char* path, const char* interface,
                           const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                           gpointer self);
  static GVariant* onGetProperty(GDBusConnection*, const char* sender, const char* path,
                                 const char* interface, const char* property, GError** error, gpointer self);
  static void onWatcherAppeared(GDBusConnection*, const char* name, const char* owner, gpointer self);
  static void onWatcherVanished(GDBusConnection*, const char* name, gpointer self);
  static void onHostSignal(GDBusConnection*, const char* sender, const char* path, const char* interface,
                           const char* signal, GVariant* parameters, gpointer self);

  NSMenu* preparedMenu() const noexcept { return preparedMenu_.get(); }
  void registerWithWatcher();
  void readHostRegistered();
  void setHasTray(bool hasTray);
  void settle();
  void send(NSEvent::EventType type, NSPoint point);
  GVariant* property(const std::string& name) const;
  void iconChanged();
  void onContextMenu();
  void showOwnMenu();

  double length_;
  GDBusConnection* connection_;
  Events events_;
  std::unique_ptr<Button> button_;
  std::shared_ptr<NSMenu> preparedMenu_;
  StatusMenuExporter menuExporter_;
  /// The last one that was shown.
  std::unique_ptr<StatusMenuWindow> menuWindow_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  std::string busName_;
  unsigned registration_ = 0;
  unsigned ownedName_ = 0;
  unsigned watch_ = 0;
  unsigned hostSignal_ = 0;
  bool hasTray_ = false;
  bool isSettled_ = false;
  /// Whether the icon is for light panels, or for dark ones; nothing: for any.
  std::optional<bool> isForLightPanels_;
  NSPoint lastClick_;
  /// The panel's, for the click that it tells of next; empty where it has none.
  std::string token_;
  Connection keyMonitor_;
};

}  // namespace platform
