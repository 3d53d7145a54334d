#include "Platform/Gtk/DesktopKeySettings.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/LogText.h"

#include <array>
#include <string_view>

#include <gio/gdesktopappinfo.h>

namespace platform {

namespace {

struct Settings {
  /// As in XDG_CURRENT_DESKTOP.
  std::string_view desktop;
  const char* desktopFile;
};

constexpr std::array known = {
    Settings{"GNOME", "gnome-keyboard-panel.desktop"},
    Settings{"KDE", "kcm_keys.desktop"},
    Settings{"KDE", "org.kde.kcm_keys.desktop"},
    Settings{"X-Cinnamon", "cinnamon-settings-keyboard.desktop"},
    Settings{"XFCE", "xfce-keyboard-settings.desktop"},
    Settings{"MATE", "mate-keybinding.desktop"},
    Settings{"LXQt", "lxqt-config-globalkeyshortcuts.desktop"},
};

}  // namespace

std::function<void()> desktopKeySettings() {
  for (const auto& each : known) {
    if (!isDesktop(each.desktop)) continue;
    // Without the file, or without the program that it names, there is no way there.
    const auto settings = GObjectPtr<GDesktopAppInfo>::adopt(g_desktop_app_info_new(each.desktopFile));
    if (!settings) continue;
    return [settings] {
      GError* raw = nullptr;
      g_app_info_launch(G_APP_INFO(settings.get()), nullptr, nullptr, &raw);
      const GErrorPtr error(raw);
      if (error) debugLog("DesktopKeySettings", "open()", forLog(error->message));
    };
  }
  return {};
}

}  // namespace platform
