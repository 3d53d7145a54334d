#pragma once

#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/GraphemeClusters.h"
#include "MarkdownEngine/Source.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>

namespace markdown {

/// The scanner under every element: one text and one position in it. It is copied freely; assigning a saved
/// copy is how an attempt is undone.
///
/// The unit is the user-perceived character: "\r\n" is one, a letter with its combining marks is one.
/// Positions are byte offsets that stand between characters. Characters are compared by their code points and
/// classified by their first one. A reading operation that fails says so by its result and leaves the
/// position where it stopped.
class Reader {
 public:
  explicit Reader(Source& source) noexcept : source_(&source) {}

  [[nodiscard]] Source& source() const noexcept { return *source_; }
  [[nodiscard]] std::string_view string() const noexcept { return source_->text(); }
  [[nodiscard]] std::size_t currentIndex() const noexcept { return currentIndex_; }
  [[nodiscard]] std::size_t endIndex() const noexcept { return string().size(); }
  [[nodiscard]] bool didReachEnd() const noexcept { return currentIndex_ == endIndex(); }

  /// The character at the position. Not to be asked for at the end.
  [[nodiscard]] std::string_view currentCharacter() const noexcept {
    return characters(currentIndex_, graphemes::characterEnd(string(), currentIndex_));
  }
  [[nodiscard]] std::optional<std::string_view> previousCharacter() const noexcept;
  /// The character behind the current one.
  [[nodiscard]] std::optional<std::string_view> nextCharacter() const noexcept;

  /// Whether the current character is this ASCII one; false at the end.
  [[nodiscard]] bool isAt(char character) const noexcept {
    return graphemes::isCharacter(string(), currentIndex_, character);
  }
  [[nodiscard]] bool isAtNewline() const noexcept {
    return !didReachEnd() && whitespace().kind == graphemes::Whitespace::Kind::newline;
  }
  [[nodiscard]] bool isAtSameLineWhitespace() const noexcept {
    return !didReachEnd() && whitespace().kind == graphemes::Whitespace::Kind::sameLine;
  }
  [[nodiscard]] bool isAtNumber() const noexcept {
    return !didReachEnd() && isNumber(graphemes::scalarAt(string(), currentIndex_).value);
  }
  [[nodiscard]] bool isBehindBackslash() const noexcept {
    return graphemes::isBehindBackslash(string(), currentIndex_);
  }

  /// Consumes the character if it is the current one.
  [[nodiscard]] bool read(char character) noexcept {
    if (!isAt(character)) return false;
    ++currentIndex_;
    return true;
  }

  struct UntilOptions {
    /// Whether a missing terminator is a failure; otherwise the text up to where the search stopped is the
    /// result.
    bool required = true;
    /// Whether the search goes over blanks.
    bool allowWhitespace = true;
    /// Whether the search goes over newlines.
    bool allowLineBreaks = false;
    /// An opener, each of which hides one terminator.
    std::optional<char> balanceAgainst = std::nullopt;
  };
  /// The text up to the terminator, which is consumed and not part of the result.
  [[nodiscard]] std::optional<std::string_view> readUntil(char terminator, UntilOptions options);
  [[nodiscard]] std::optional<std::string_view> readUntil(char terminator) {
    return readUntil(terminator, {});
  }

  /// Consumes the unbroken run of the character and returns its length.
  std::size_t readCount(char character) noexcept;
  struct Run {
    std::string_view text;
    std::size_t count;
  };
  /// Consumes up to `max` characters with a numeric value; at least one is required.
  [[nodiscard]] std::optional<Run> readNumbers(
      std::size_t max = std::numeric_limits<std::size_t>::max()) noexcept;
  /// Consumes the current character if it is in the set of ASCII characters.
  [[nodiscard]] std::optional<char> readCharacter(const ByteSet& set) noexcept;
  /// Consumes same-line white space; at least one character is required.
  [[nodiscard]] std::optional<Run> readWhitespaces() noexcept;
  /// The text up to the next newline, which is consumed and not part of the result.
  std::string_view readUntilEndOfLine() noexcept;
  void discardWhitespaces() noexcept;
  void discardWhitespacesAndNewlines() noexcept;

  /// No bounds are checked by the four operations that follow.
  void advanceIndex(std::size_t count = 1) noexcept;
  void rewindIndex() noexcept { currentIndex_ = graphemes::characterStart(string(), currentIndex_); }
  void moveToIndex(std::size_t index) noexcept { currentIndex_ = index; }
  [[nodiscard]] std::string_view characters(std::size_t from, std::size_t to) const noexcept {
    return {string().data() + from, to - from};
  }

 private:
  [[nodiscard]] graphemes::Whitespace whitespace() const noexcept {
    return graphemes::whitespaceAt(string(), currentIndex_);
  }

  Source* source_;
  std::size_t currentIndex_ = 0;
};

/// The text without the white space at its start or its end.
[[nodiscard]] std::string_view trimmingLeadingWhitespaces(std::string_view text) noexcept;
[[nodiscard]] std::string_view trimmingTrailingWhitespaces(std::string_view text) noexcept;
[[nodiscard]] std::string_view trimmingWhitespaces(std::string_view text) noexcept;

}  // namespace markdown
