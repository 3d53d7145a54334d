#include "MarkdownEngine/Reader.h"

namespace markdown {
namespace {

using Kind = graphemes::Whitespace::Kind;

constexpr ByteSet newlineStops{newlineBytes};

}  // namespace

std::optional<std::string_view> Reader::previousCharacter() const noexcept {
  if (currentIndex_ == 0) return std::nullopt;
  return characters(graphemes::characterStart(string(), currentIndex_), currentIndex_);
}

std::optional<std::string_view> Reader::nextCharacter() const noexcept {
  if (didReachEnd()) return std::nullopt;
  const std::size_t next = graphemes::characterEnd(string(), currentIndex_);
  if (next == endIndex()) return std::nullopt;
  return characters(next, graphemes::characterEnd(string(), next));
}

std::optional<std::string_view> Reader::readUntil(char terminator, UntilOptions options) {
  const std::size_t start = currentIndex_;
  std::size_t balance = 0;
  while (!didReachEnd()) {
    const bool isTerminator = isAt(terminator);
    if (isTerminator && balance == 0) {
      const std::string_view result = characters(start, currentIndex_);
      ++currentIndex_;
      return result;
    }
    const Kind kind = whitespace().kind;
    if (!options.allowWhitespace && kind == Kind::sameLine) break;
    if (!options.allowLineBreaks && kind == Kind::newline) break;
    if (options.balanceAgainst && isAt(*options.balanceAgainst)) ++balance;
    if (options.balanceAgainst && isTerminator) --balance;
    advanceIndex();
  }
  if (options.required) return std::nullopt;
  return characters(start, currentIndex_);
}

std::size_t Reader::readCount(char character) noexcept {
  const std::size_t start = currentIndex_;
  while (isAt(character)) ++currentIndex_;
  return currentIndex_ - start;
}

std::optional<Reader::Run> Reader::readNumbers(std::size_t max) noexcept {
  const std::size_t start = currentIndex_;
  std::size_t count = 0;
  while (count < max && isAtNumber()) {
    advanceIndex();
    ++count;
  }
  if (count == 0) return std::nullopt;
  return Run{characters(start, currentIndex_), count};
}

std::optional<char> Reader::readCharacter(const ByteSet& set) noexcept {
  if (didReachEnd()) return std::nullopt;
  const char byte = string()[currentIndex_];
  if (!set.contains(byte) || !isAt(byte)) return std::nullopt;
  ++currentIndex_;
  return byte;
}

std::optional<Reader::Run> Reader::readWhitespaces() noexcept {
  const std::size_t start = currentIndex_;
  std::size_t count = 0;
  while (!didReachEnd()) {
    const auto found = whitespace();
    if (found.kind != Kind::sameLine) break;
    currentIndex_ = found.end;
    ++count;
  }
  if (count == 0) return std::nullopt;
  return Run{characters(start, currentIndex_), count};
}

std::string_view Reader::readUntilEndOfLine() noexcept {
  const std::size_t start = currentIndex_;
  std::size_t index = newlineStops.find(string().data(), start, endIndex());
  while (index < endIndex()) {
    const auto found = graphemes::whitespaceAtScalar(string(), index);
    if (found.kind == Kind::newline) {
      currentIndex_ = found.end;
      return characters(start, index);
    }
    index = newlineStops.find(string().data(), index + 1, endIndex());
  }
  currentIndex_ = endIndex();
  return characters(start, currentIndex_);
}

void Reader::discardWhitespaces() noexcept {
  while (!didReachEnd()) {
    const auto found = whitespace();
    if (found.kind != Kind::sameLine) return;
    currentIndex_ = found.end;
  }
}

void Reader::discardWhitespacesAndNewlines() noexcept {
  while (!didReachEnd()) {
    const auto found = whitespace();
    if (found.kind == Kind::none) return;
    currentIndex_ = found.end;
  }
}

void Reader::advanceIndex(std::size_t count) noexcept {
  for (; count > 0; --count) currentIndex_ = graphemes::characterEnd(string(), currentIndex_);
}

std::string_view trimmingLeadingWhitespaces(std::string_view text) noexcept {
  while (!text.empty()) {
    const auto found = graphemes::whitespaceAt(text, 0);
    if (found.kind == Kind::none) break;
    text.remove_prefix(found.end);
  }
  return text;
}

std::string_view trimmingTrailingWhitespaces(std::string_view text) noexcept {
  while (!text.empty()) {
    // A letter or mark of ASCII at the end is no white space, whatever it is joined to.
    if (isAscii(text.back()) && !isWhitespace(static_cast<unsigned char>(text.back()))) break;
    const std::size_t start = graphemes::characterStart(text, text.size());
    if (graphemes::whitespaceAt(text, start).kind == Kind::none) break;
    text.remove_suffix(text.size() - start);
  }
  return text;
}

std::string_view trimmingWhitespaces(std::string_view text) noexcept {
  return trimmingLeadingWhitespaces(trimmingTrailingWhitespaces(text));
}

}  // namespace markdown
