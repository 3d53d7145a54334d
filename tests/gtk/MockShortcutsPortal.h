#pragma once

#include "Platform/Gtk/GObjectPtr.h"

#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace platform {

/// The desktop's portal for global shortcuts, on a connection of its own to the session bus: it remembers
/// what it was asked and answers as a test wants it to. Without a portal of this kind on the bus before.
class MockShortcutsPortal {
 public:
  struct Options {
    /// False: a portal that is too old for global shortcuts.
    bool hasShortcuts = true;
    bool hasRegistry = true;
    /// What the user says to the binding: 0 yes, 1 no.
    guint32 answer = 0;
    /// What is bound from an earlier time, without a question.
    std::vector<std::string> remembered;
    /// The shortcuts are those of the session's making, and a binding binds nothing.
    bool takesThemAtCreation = false;
    /// Of the interface: the second one can show what it has bound.
    guint32 version = 1;
  };

  explicit MockShortcutsPortal(Options options);
  ~MockShortcutsPortal();
  MockShortcutsPortal(const MockShortcutsPortal&) = delete;
  MockShortcutsPortal& operator=(const MockShortcutsPortal&) = delete;

  /// The methods that were called, in order, with what matters of their parameters.
  std::vector<std::string> calls;
  /// Of the last binding: what each shortcut was told with.
  std::map<std::string, std::pair<std::string, std::string>> descriptionAndTrigger;
  std::string session;
  /// The desktop says yes to a binding, and binds nothing.
  bool bindsNothing = false;

  /// The user's hands.
  void press(const std::string& name, const std::string& token = {}) { signal("Activated", name, token); }
  void release(const std::string& name) { signal("Deactivated", name, {}); }
  void pressInSession(const std::string& otherSession, const std::string& name);

 private:
  void signal(const char* member, const std::string& name, const std::string& token);
  void handle(const char* sender, const char* interface, const char* method, GVariant* parameters,
              GDBusMethodInvocation* invocation);
  GVariant* shortcutList(const std::vector<std::string>& names) const;

  Options options_;
  GObjectPtr<GDBusConnection> connection_;
  std::vector<guint> objects_;
  guint name_ = 0;
};

}  // namespace platform
