#pragma once

#include "Platform/Alive.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NSMenu.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace platform {

/// Offers a menu to the desktop's panel, which draws it (the interface com.canonical.dbusmenu). Main thread.
class StatusMenuExporter {
 public:
  static constexpr const char* objectPath = "/MenuBar";

  /// `willOpen` is called when the panel is about to put the menu up, `didClose` when it is known to be gone.
  StatusMenuExporter(std::function<void()> willOpen, std::function<void()> didClose);
  ~StatusMenuExporter();
  StatusMenuExporter(const StatusMenuExporter&) = delete;
  StatusMenuExporter& operator=(const StatusMenuExporter&) = delete;

  void setMenu(std::shared_ptr<NSMenu> menu);
  void registerOn(GDBusConnection* connection);

  /// True if somebody has asked what is in the menu, to draw it.
  bool isRead() const noexcept { return isRead_; }
  /// Another panel may be one that draws no menus.
  void forgetReader() noexcept { isRead_ = false; }

  /// True while `willOpen` runs: the panel puts the menu up itself.
  bool isBeingOpened() const noexcept { return isBeingOpened_; }

  /// What a call of the panel's comes to: the answer (with a floating reference), or none and in `error` why.
  /// `parameters` are of the method's type; what is in them may be anything.
  GVariant* respond(const std::string& method, GVariant* parameters, std::string& error);

  // The panel's part, for who draws the menu in its place.
  void wasOpened() noexcept { isOpen_ = true; }
  void wasChosen(std::size_t number) { itemEvent(static_cast<int>(number) + 1, "clicked"); }
  /// Does nothing if it isn't open.
  void wasClosed() { menuClosed(); }
  /// As `wasClosed`, unless an item turns out to have been chosen.
  void closeSoon();

 private:
  static void onMethodCall(GDBusConnection*, const char* sender, const char* path, const char* interface,
                           const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                           gpointer self);
  static GVariant* onGetProperty(GDBusConnection*, const char* sender, const char* path,
                                 const char* interface, const char* property, GError** error, gpointer self);

  void handle(const std::string& method, GVariant* parameters, GDBusMethodInvocation* invocation);
  GVariant* groupProperties(GVariant* parameters) const;
  GVariant* layout(int parent, int depth) const;
  GVariant* properties(int id) const;
  void itemEvent(int id, const std::string& event);
  void aboutToShow(int id);
  void menuClosed();
  void itemChanged(int id);
  void layoutChanged();
  NSMenuItem* item(int id) const;

  std::function<void()> willOpen_;
  std::function<void()> didClose_;
  std::shared_ptr<NSMenu> menu_;
  Connection menuSubscription_;
  std::vector<Connection> itemSubscriptions_;
  GDBusConnection* connection_ = nullptr;
  unsigned registration_ = 0;
  unsigned revision_ = 1;
  bool isOpen_ = false;
  bool isBeingOpened_ = false;
  bool isRead_ = false;
  std::unique_ptr<Timer> closing_;
  /// Held by nobody else: what waits for a later turn sees by it whether the exporter still lives.
  Alive isAlive_;
};

}  // namespace platform
