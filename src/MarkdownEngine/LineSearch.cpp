#include "MarkdownEngine/LineSearch.h"

#include "MarkdownEngine/GraphemeClusters.h"

#include <string>
#include <vector>

namespace markdown {
namespace {

using Kind = graphemes::Whitespace::Kind;

constexpr ByteSet parenthesisStops{"()\n\v\f\r\xC2\xE2"};

bool isNewlineAt(std::string_view text, std::size_t index) noexcept {
  return graphemes::whitespaceAtScalar(text, index).kind == Kind::newline;
}

}  // namespace

LineSearch::LineSearch(std::string_view text, char character, End end)
    : text_(text),
      stops_(std::string(end == End::whitespace ? whitespaceBytes : newlineBytes) + character),
      character_(character),
      end_(end) {}

std::optional<std::size_t> LineSearch::find(std::size_t from) {
  if (from < knownFrom_ || from > knownTo_) {
    knownFrom_ = from;
    isFound_ = false;
    std::size_t index = stops_.find(text_.data(), from, text_.size());
    for (; index < text_.size(); index = stops_.find(text_.data(), index + 1, text_.size())) {
      if (text_[index] == character_) {
        isFound_ = graphemes::standsAlone(text_, index);
        if (isFound_) break;
      } else {
        const Kind kind = graphemes::whitespaceAtScalar(text_, index).kind;
        if (kind == Kind::newline || (end_ == End::whitespace && kind == Kind::sameLine)) break;
      }
    }
    knownTo_ = index;
  }
  return isFound_ ? std::optional(knownTo_) : std::nullopt;
}

std::optional<std::size_t> ParenthesisSearch::findClosing(std::size_t from) {
  if (unmatched_.contains(from - 1)) return std::nullopt;
  std::size_t depth = 0;
  std::size_t index = parenthesisStops.find(text_.data(), from, text_.size());
  for (; index < text_.size(); index = parenthesisStops.find(text_.data(), index + 1, text_.size())) {
    if (text_[index] == '(') {
      if (graphemes::standsAlone(text_, index)) ++depth;
    } else if (text_[index] == ')') {
      if (!graphemes::standsAlone(text_, index)) continue;
      if (depth == 0) return index;
      --depth;
    } else if (isNewlineAt(text_, index)) {
      break;
    }
  }
  rememberUnmatched(from - 1);
  return std::nullopt;
}

void ParenthesisSearch::rememberUnmatched(std::size_t opening) {
  std::vector<std::size_t> open;
  for (std::size_t index = opening; index < text_.size();
       index = parenthesisStops.find(text_.data(), index + 1, text_.size())) {
    if (text_[index] == '(') {
      if (graphemes::standsAlone(text_, index)) open.push_back(index);
    } else if (text_[index] == ')') {
      if (!open.empty() && graphemes::standsAlone(text_, index)) open.pop_back();
    } else if (isNewlineAt(text_, index)) {
      break;
    }
  }
  for (const std::size_t position : open) unmatched_.insert(position);
}

}  // namespace markdown
