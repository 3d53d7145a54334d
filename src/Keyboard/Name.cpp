#include "Keyboard/Name.h"

#include "Keyboard/KeyboardShortcuts.h"

#include <array>
#include <string_view>
#include <utility>

namespace velkin::KeyboardShortcuts {

namespace {

constexpr auto commandShift = platform::NSEvent::commandFlag | platform::NSEvent::shiftFlag;

struct Title {
  std::string_view name;
  std::string_view title;
};

constexpr std::array titles = {
    Title{"popUpShortcut", "Open or close the popover"},
    Title{"searchBarShortcut", "Open or close the search bar"},
};

}  // namespace

Name::Name(std::string rawValue, std::optional<Shortcut> defaultShortcut)
    : rawValue_(std::move(rawValue)), defaultShortcut_(defaultShortcut) {
  if (defaultShortcut_ && !userDefaultsContains(*this)) setShortcut(defaultShortcut_, *this);
}

Name Name::popUpShortcut() { return Name("popUpShortcut", Shortcut(Key::t, commandShift)); }

Name Name::searchBarShortcut() { return Name("searchBarShortcut", Shortcut(Key::r, commandShift)); }

std::optional<Shortcut> Name::shortcut() const { return getShortcut(*this); }

std::string Name::title() const {
  for (const auto& entry : titles) {
    if (entry.name == rawValue_) return std::string(entry.title);
  }
  return rawValue_;
}

}  // namespace velkin::KeyboardShortcuts
