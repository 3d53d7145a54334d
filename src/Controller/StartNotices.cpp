#include "Controller/StartNotices.h"

#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Keyboard/Name.h"
#include "Keyboard/Shortcut.h"
#include "Keyboard/ShortcutLegend.h"
#include "Platform/CarbonEvents.h"
#include "Platform/NSUserDefaults.h"
#include "Platform/NSWorkspace.h"
#include "Platform/TrayClicks.h"

#include <optional>
#include <string>
#include <utility>

namespace velkin {

namespace {

using KeyboardShortcuts::Name;
using platform::NSWorkspace;

constexpr double settlingTime = 2;

/// The keys under which the name works now; empty if it has none.
std::string workingKeys(const Name& name) {
  if (const auto granted = platform::GetEventDispatcherTarget().grantedTrigger(name.rawValue()))
    return *granted;
  const auto shortcut = name.shortcut();
  if (!shortcut || !CarbonKeyboardShortcuts::isRegistered(*shortcut)) return {};
  return spelledOut(shortcut->description());
}

/// The keys that were asked for and that somebody else has.
std::string refusedKeys(const Name& name) {
  auto& target = platform::GetEventDispatcherTarget();
  const auto shortcut = name.shortcut();
  if (!shortcut || target.notice() || target.grantedTrigger(name.rawValue()) ||
      CarbonKeyboardShortcuts::isRegistered(*shortcut)) {
    return {};
  }
  return spelledOut(shortcut->description());
}

std::string joined(const std::string& first, const std::string& second, const char* between) {
  if (first.empty() || second.empty()) return first + second;
  return first + between + second;
}

/// Under it stands which refused shortcuts the user has been told of.
constexpr const char* toldKey = "refusedShortcutsTold";

void tellOfRefusal(std::function<void()> openShortcuts) {
  const auto refused =
      joined(refusedKeys(Name::popUpShortcut()), refusedKeys(Name::searchBarShortcut()), " and ");
  auto& defaults = platform::NSUserDefaults::standardUserDefaults();
  const auto told = defaults.stringForKey(toldKey).value_or("");
  // Once, and not at each login: who lets the other program have the keys knows it. News are told again.
  if (refused == told) return;
  if (refused.empty()) return defaults.removeObjectForKey(toldKey);
  defaults.setObject(refused, toldKey);
  NSWorkspace::shared().deliver({.title = "A shortcut is taken.",
                                 .informativeText = "Another program uses " + refused +
                                                    ". Velkin's menu has other keys under Shortcuts.",
                                 .actionButtonTitle = "Choose Another",
                                 .action = std::move(openShortcuts)});
}

void tellNewUser(std::function<void()> openPopover) {
  const auto popUp = workingKeys(Name::popUpShortcut());
  const auto search = workingKeys(Name::searchBarShortcut());
  const auto keys = joined(popUp.empty() ? popUp : popUp + " opens it",
                           search.empty() ? search : search + " asks a question", ", ");
  const auto sentence = keys.empty() ? keys : keys + ".";
  const std::string clicks = platform::trayClicks() == platform::TrayClicks::menu
                                 ? "A double click on its icon opens it, and a single one its menu."
                                 : "";
  NSWorkspace::shared().deliver({.title = "Velkin is in the tray.",
                                 .informativeText = joined(sentence, clicks, " "),
                                 .actionButtonTitle = "Open",
                                 .action = std::move(openPopover)});
}

}  // namespace

std::unique_ptr<platform::Timer> tellAfterStart(bool isFreshInstall, std::function<void()> openPopover,
                                                std::function<void()> openShortcuts) {
  return platform::DispatchQueue::main().timer(settlingTime,
                                               [isFreshInstall, openPopover = std::move(openPopover),
                                                openShortcuts = std::move(openShortcuts)]() mutable {
                                                 if (isFreshInstall) tellNewUser(std::move(openPopover));
                                                 tellOfRefusal(std::move(openShortcuts));
                                               });
}

}  // namespace velkin
