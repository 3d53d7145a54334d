#include "Keyboard/Shortcut.h"
#include "MarkdownEngine/GraphemeClusters.h"
#include "Platform/DispatchQueue.h"
#include "Platform/FatalError.h"
#include "Platform/TextInputSources.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <array>

namespace velkin::KeyboardShortcuts {

namespace {

struct NamedKey {
  Key key;
  std::string_view text;
};

/// Keys that no layout has a character for, or none that could be seen.
constexpr std::array keyToCharacterMapping = {
    NamedKey{Key::returnKey, "↩"},  NamedKey{Key::deleteKey, "⌫"}, NamedKey{Key::deleteForward, "⌦"},
    NamedKey{Key::end, "↘"},        NamedKey{Key::escape, "⎋"},    NamedKey{Key::help, "?⃝"},
    NamedKey{Key::home, "↖"},       NamedKey{Key::space, "⎵"},     NamedKey{Key::tab, "⇥"},
    NamedKey{Key::pageUp, "⇞"},     NamedKey{Key::pageDown, "⇟"},  NamedKey{Key::upArrow, "↑"},
    NamedKey{Key::rightArrow, "→"}, NamedKey{Key::downArrow, "↓"}, NamedKey{Key::leftArrow, "←"},
    NamedKey{Key::f1, "F1"},        NamedKey{Key::f2, "F2"},       NamedKey{Key::f3, "F3"},
    NamedKey{Key::f4, "F4"},        NamedKey{Key::f5, "F5"},       NamedKey{Key::f6, "F6"},
    NamedKey{Key::f7, "F7"},        NamedKey{Key::f8, "F8"},       NamedKey{Key::f9, "F9"},
    NamedKey{Key::f10, "F10"},      NamedKey{Key::f11, "F11"},     NamedKey{Key::f12, "F12"},
    NamedKey{Key::f13, "F13"},      NamedKey{Key::f14, "F14"},     NamedKey{Key::f15, "F15"},
    NamedKey{Key::f16, "F16"},      NamedKey{Key::f17, "F17"},     NamedKey{Key::f18, "F18"},
    NamedKey{Key::f19, "F19"},      NamedKey{Key::f20, "F20"},
};

/// The characters by which menus name the keys whose text is longer than one: the function keys' own.
std::string keyToKeyEquivalentString(Key key) {
  const auto found = std::find(Key::functionKeys.begin(), Key::functionKeys.end(), key);
  if (found == Key::functionKeys.end()) return {};
  std::string text;
  platform::appendUTF8(
      text,
      platform::NSEvent::SpecialKey::functionKeys[static_cast<std::size_t>(found - Key::functionKeys.begin())]
          .rawValue);
  return text;
}

}  // namespace

std::optional<std::string> Shortcut::keyToCharacter() const {
  const auto named = std::find_if(keyToCharacterMapping.begin(), keyToCharacterMapping.end(),
                                  [this](const auto& entry) { return entry.key == key(); });
  if (named != keyToCharacterMapping.end()) return std::string(named->text);
  if (!platform::DispatchQueue::main().isCurrent()) {
    platform::assertionFailure("This method cannot be used in a `NSBackgroundActivityScheduler` task");
    return std::nullopt;
  }
  const auto source = platform::TISCopyCurrentASCIICapableKeyboardLayoutInputSource();
  if (!source || !source->hasUnicodeKeyLayoutData()) return std::nullopt;
  const auto text = source->UCKeyTranslate(static_cast<std::uint16_t>(carbonKeyCode_));
  if (!text || text->empty()) return std::nullopt;
  return *text;
}

std::string Shortcut::keyEquivalent() const {
  const auto text = keyToCharacter().value_or("");
  const bool isOneCharacter = text.empty() || markdown::graphemes::characterEnd(text, 0) == text.size();
  return isOneCharacter ? text : keyToKeyEquivalentString(key());
}

}  // namespace velkin::KeyboardShortcuts
