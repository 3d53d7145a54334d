#pragma once

#include "MarkdownEngine/GraphemeClusters.h"

#include <cstddef>
#include <string_view>

namespace markdown {

/// Whether the text that is being read ends at a newline because of what stands at `index`, right behind it:
/// an empty line, or a line that begins like a heading, an HTML element, code or a bullet.
[[nodiscard]] inline bool beginsBlock(std::string_view text, std::size_t index) noexcept {
  const char byte = text[index];
  if (byte == '\n') return true;
  if (byte == '\r') return index + 1 < text.size() && text[index + 1] == '\n';
  return (byte == '#' || byte == '<' || byte == '`' || byte == '-') &&
         graphemes::isCharacter(text, index, byte);
}

/// Whether text ends before the "<" at `index` because it may begin a paragraph element (or any other whose
/// name begins so). Something must stand behind the "<".
[[nodiscard]] inline bool stopsText(std::string_view text, std::size_t index) noexcept {
  return graphemes::isCharacter(text, index + 1, 'p') || graphemes::isCharacter(text, index + 1, 'P');
}

/// How many blanks stand in a row right before a position of a text that is being read. Newlines between
/// blanks don't end the row, everything else does. Two or more make the next newline a line break.
class BlankCounter {
 public:
  explicit BlankCounter(std::size_t start) noexcept : validAt_(start) {}

  /// Counts the blanks that stand right before `index`, which is at a newline behind everything read so far.
  void countBefore(std::string_view text, std::size_t index) noexcept {
    std::size_t first = index;
    while (first > validAt_ && text[first - 1] == ' ' &&
           (first < 2 || isAscii(text[first - 2]) || !graphemes::prependsNext(text, first - 1))) {
      --first;
    }
    const std::size_t blanks = index - first;
    count_ = first == validAt_ && isAfterNewline_ ? count_ + blanks : blanks;
  }

  void passNewline(std::size_t end) noexcept {
    validAt_ = end;
    isAfterNewline_ = true;
  }

  [[nodiscard]] bool breaksLine(std::string_view text, std::size_t newline) const noexcept {
    return count_ >= 2 || graphemes::isBehindBackslash(text, newline);
  }

 private:
  std::size_t validAt_;
  std::size_t count_ = 0;
  bool isAfterNewline_ = false;
};

}  // namespace markdown
