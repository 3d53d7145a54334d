#pragma once

#include <string>

#include <gio/gio.h>

namespace platform {

/// Programs that the desktop starts with the user's sessions, by entries in the user's autostart folder; in a
/// sandbox, which has no such folder, by the desktop's portal. Main thread.
struct LoginItem {
  /// The helper is the program beside ours that is called as the identifier's last part. False if the entry
  /// can't be written or removed; what the portal says comes later, and is in the log.
  static bool setEnabled(const std::string& identifier, bool isEnabled, GDBusConnection* connection);

  /// The entry's text.
  static std::string entryFor(const std::string& program);
  /// A path as an entry's command: quoted where need be.
  static std::string quoted(const std::string& path);

  static bool isSandboxed();
  static void askPortal(bool isEnabled, GDBusConnection* connection);
};

}  // namespace platform
