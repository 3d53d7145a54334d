#include "Platform/Headless/HeadlessTextView.h"

#include "Platform/NSPasteboard.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

namespace {

std::u32string decoded(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) {
    const auto character = takeCharacter(text);
    characters += character && *character != 0 ? *character : replacementCharacter;
  }
  return characters;
}

std::string encoded(std::u32string_view characters) {
  std::string text;
  for (const char32_t character : characters) appendUTF8(text, character);
  return text;
}

}  // namespace

std::string HeadlessTextView::string() const { return encoded(now_.text); }

std::string HeadlessTextView::selectedText() const {
  return encoded(std::u32string_view(now_.text).substr(now_.selection.location, now_.selection.length));
}

NSRange HeadlessTextView::cut(NSRange range) const {
  const auto location = std::min(range.location, now_.text.size());
  return {location, std::min(range.length, now_.text.size() - location)};
}

bool HeadlessTextView::isTooLong(const std::u32string& text) {
  if (text.size() * 4 <= maximumBytes || encoded(text).size() <= maximumBytes) return false;
  if (didRefuse) didRefuse(Refusal::tooLong);
  return true;
}

void HeadlessTextView::change(Moment next) {
  earlier_.push_back(std::exchange(now_, std::move(next)));
  later_.clear();
  if (textDidChange) textDidChange();
}

bool HeadlessTextView::setString(const std::string& text, UndoHistory history) {
  auto characters = decoded(text);
  if (isTooLong(characters)) return false;
  if (characters != now_.text) {
    const auto end = std::min(now_.selection.location, characters.size());
    change({std::move(characters), {end, 0}});
  }
  if (history == UndoHistory::forgotten) {
    earlier_.clear();
    later_.clear();
  }
  return true;
}

void HeadlessTextView::setSelectedRange(NSRange range) { now_.selection = cut(range); }

bool HeadlessTextView::insertText(const std::string& text, NSRange replacementRange) {
  const auto range = cut(replacementRange);
  const auto characters = decoded(text);
  auto changed = now_.text;
  changed.replace(range.location, range.length, characters);
  if (isTooLong(changed)) return false;
  if (range.length == 0 && characters.empty()) return true;
  change({std::move(changed), {range.location + characters.size(), 0}});
  return true;
}

bool HeadlessTextView::type(const std::string& text) {
  if (hold_.expired()) return insertText(text, now_.selection);
  heldKeys_.push_back(text);
  return true;
}

std::shared_ptr<void> HeadlessTextView::holdKeys() {
  if (!hold_.expired()) return hold_.lock();
  std::shared_ptr<void> hold(nullptr, [this, alive = isAlive_.watch()](void*) {
    if (alive) handBackHeldKeys();
  });
  hold_ = hold;
  return hold;
}

void HeadlessTextView::handBackHeldKeys() {
  hold_.reset();
  for (const auto& text : std::exchange(heldKeys_, {})) type(text);
}

void HeadlessTextView::travel(std::vector<Moment>& from, std::vector<Moment>& to) {
  if (from.empty()) return;
  to.push_back(std::exchange(now_, std::move(from.back())));
  from.pop_back();
  if (textDidChange) textDidChange();
}

bool HeadlessTextView::perform(const std::string& selector) {
  auto& pasteboard = NSPasteboard::generalPasteboard();
  if (selector == "copy:" || selector == "cut:") {
    if (now_.selection.length == 0) return true;
    pasteboard.clearContents();
    pasteboard.setString(selectedText(), NSPasteboardTypeString);
    if (selector == "cut:") type("");
  } else if (selector == "paste:") {
    pasteboard.readItems([this](const NSPasteboardReading& reading) {
      if (const auto text = reading.string()) type(*text);
    });
  } else if (selector == "selectAll:") {
    setSelectedRange({0, now_.text.size()});
  } else if (selector == "undo:") {
    undo();
  } else if (selector == "redo:") {
    redo();
  } else {
    return false;
  }
  return true;
}

}  // namespace platform
