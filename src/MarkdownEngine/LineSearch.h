#pragma once

#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/PositionSet.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace markdown {

/// Answers where, from a position, the next occurrence of one ASCII character stands in the same line. The
/// last answer is kept with the stretch for which it holds, so that a line full of openers is searched once.
class LineSearch {
 public:
  /// Where a search ends without success: at a newline, or at white space of any kind.
  enum class End { newline, whitespace };

  LineSearch(std::string_view text, char character, End end);

  [[nodiscard]] std::optional<std::size_t> find(std::size_t from);

 private:
  std::string_view text_;
  ByteSet stops_;
  char character_;
  End end_;
  std::size_t knownFrom_ = 1;
  std::size_t knownTo_ = 0;
  bool isFound_ = false;
};

/// Answers where the parenthesis that was opened right before a position is closed in the same line. After
/// the first failure in a line its parentheses are matched once for all, and later failures there are known.
class ParenthesisSearch {
 public:
  explicit ParenthesisSearch(std::string_view text) noexcept : text_(text), unmatched_(text.size()) {}

  [[nodiscard]] std::optional<std::size_t> findClosing(std::size_t from);

 private:
  void rememberUnmatched(std::size_t opening);

  std::string_view text_;
  PositionSet unmatched_;
};

}  // namespace markdown
