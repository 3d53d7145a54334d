#pragma once

#include "Platform/Alive.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/HotKeyGrabs.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace platform {

/// Keys by way of the desktop's portal for global shortcuts, for sessions in which a program can't take any:
/// the desktop asks the user, who may choose other keys, and remembers the answer for this program. Names
/// hold over restarts, combinations are only a wish. Main thread.
class PortalHotKeyGrabs : public HotKeyGrabs {
 public:
  struct Surroundings {
    /// nullptr where there is no session bus.
    std::function<GDBusConnection*()> connection;
    /// Runs work once the toolkit may be used.
    std::function<void(std::function<void()>)> whenToolkitReady;
  };

  PortalHotKeyGrabs(Surroundings surroundings, OnKey onKey);
  ~PortalHotKeyGrabs() override;
  PortalHotKeyGrabs(const PortalHotKeyGrabs&) = delete;
  PortalHotKeyGrabs& operator=(const PortalHotKeyGrabs&) = delete;

  /// True in a session of which X sees only a part.
  static bool isNeeded();

  /// Never refused: what the desktop says comes later.
  OSStatus grab(HotKeyCombination combination) override;
  void ungrab(HotKeyCombination combination) override;
  /// Whoever else has the keys, the desktop sorts it out with the user.
  bool isHeldByAnother(HotKeyCombination) override { return false; }
  void describe(HotKeyCombination combination, std::string_view name, std::string_view title) override;
  std::optional<HotKeyNotice> notice() override { return notice_; }
  std::optional<std::string> grantedTrigger(std::string_view name) override;
  /// The portal's own dialogue where it has one, else the desktop's settings program.
  std::function<void()> settingsOpener() override;

 private:
  struct Shortcut {
    HotKeyCombination combination;
    std::string title;
  };
  using OnReply = std::function<void(GVariant* reply, const char* error)>;
  using OnResponse = std::function<void(GVariant* results)>;

  void bindLater();
  void bind();
  void registerWithHost();
  void createSession();
  void listShortcuts();
  void bindShortcuts();
  /// Of the present session, a(sa{sv}), with a floating reference.
  GVariant* shortcutList() const;
  void closeSession();
  void noteBound(GVariant* results);
  void fail(const std::string& reason);
  std::set<std::string> wantedNames() const;

  void call(const char* path, const char* interface, const char* method, GVariant* parameters,
            OnReply onReply);
  /// Calls a method that answers by a request's signal; `parameters` is given the request's token.
  void request(const char* method, const std::function<GVariant*(const char* token)>& parameters,
               OnResponse onResponse);
  void listen(const char* interface, const char* signal, const char* path, GDBusSignalCallback callback);
  void onActivated(GVariant* parameters, bool isDown);
  void portalChanged(bool isThere);

  Surroundings surroundings_;
  OnKey onKey_;
  Alive isAlive_;
  GObjectPtr<GDBusConnection> connection_;
  std::map<std::string, Shortcut> shortcuts_;
  std::set<HotKeyCombination> held_;
  /// What the present session was made for; an answer that belongs to an earlier one is passed over.
  std::set<std::string> sessionNames_;
  std::string session_;
  guint32 portalVersion_ = 0;
  int generation_ = 0;
  unsigned requests_ = 0;
  bool isBindingPlanned_ = false;
  bool wasPortalLost_ = false;
  guint watch_ = 0;
  std::vector<guint> signals_;
  std::optional<HotKeyNotice> notice_;
  /// What the desktop has bound, by name.
  std::map<std::string, std::string, std::less<>> triggers_;
};

}  // namespace platform
