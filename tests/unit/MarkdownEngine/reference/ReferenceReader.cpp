#include "unit/MarkdownEngine/reference/ReferenceReader.h"

namespace markdown::reference {

std::optional<Character> ReferenceReader::previousCharacter() const {
  if (currentIndex == 0) return std::nullopt;
  return characters_->at(currentIndex - 1);
}

std::optional<Character> ReferenceReader::nextCharacter() const {
  if (currentIndex + 1 >= endIndex()) return std::nullopt;
  return characters_->at(currentIndex + 1);
}

bool ReferenceReader::previousIs(std::string_view text) const {
  const auto previous = previousCharacter();
  return previous && previous->is(text);
}

void ReferenceReader::read(std::string_view character) {
  if (didReachEnd() || !currentCharacter().is(character)) throw ReadError{};
  advanceIndex();
}

std::string ReferenceReader::readUntil(std::string_view terminator, UntilOptions options) {
  const std::size_t start = currentIndex;
  long balance = 0;
  while (!didReachEnd()) {
    if (currentCharacter().is(terminator) && balance <= 0) {
      std::string result = characters(start, currentIndex);
      advanceIndex();
      return result;
    }
    if (!options.allowWhitespace && currentCharacter().isSameLineWhitespace()) break;
    if (!options.allowLineBreaks && currentCharacter().isNewline()) break;
    if (!options.balanceAgainst.empty()) {
      if (currentCharacter().is(options.balanceAgainst)) ++balance;
      if (currentCharacter().is(terminator)) --balance;
    }
    advanceIndex();
  }
  if (options.required) throw ReadError{};
  return characters(start, currentIndex);
}

std::size_t ReferenceReader::readCount(std::string_view character) {
  std::size_t count = 0;
  while (!didReachEnd() && currentCharacter().is(character)) {
    ++count;
    advanceIndex();
  }
  return count;
}

std::vector<Character> ReferenceReader::readCharacters(const std::function<bool(const Character&)>& predicate,
                                                       std::size_t max) {
  std::vector<Character> result;
  while (!didReachEnd() && result.size() < max && predicate(currentCharacter())) {
    result.push_back(currentCharacter());
    advanceIndex();
  }
  if (result.empty()) throw ReadError{};
  return result;
}

Character ReferenceReader::readCharacterIn(std::string_view asciiSet) {
  if (didReachEnd() || !currentCharacter().isAny(asciiSet)) throw ReadError{};
  Character result = currentCharacter();
  advanceIndex();
  return result;
}

std::size_t ReferenceReader::readWhitespaces() {
  return readCharacters([](const Character& c) { return c.isSameLineWhitespace(); }).size();
}

std::string ReferenceReader::readUntilEndOfLine() {
  const std::size_t start = currentIndex;
  while (!didReachEnd()) {
    if (currentCharacter().isNewline()) {
      std::string result = characters(start, currentIndex);
      advanceIndex();
      return result;
    }
    advanceIndex();
  }
  return characters(start, currentIndex);
}

void ReferenceReader::discardWhitespaces() {
  while (!didReachEnd() && currentCharacter().isSameLineWhitespace()) advanceIndex();
}

void ReferenceReader::discardWhitespacesAndNewlines() {
  while (!didReachEnd() && currentCharacter().isWhitespace()) advanceIndex();
}

std::string ReferenceReader::characters(std::size_t from, std::size_t to) const {
  std::string result;
  for (std::size_t i = from; i < to; ++i) result += characters_->at(i).bytes;
  return result;
}

std::string trimmingLeadingWhitespaces(const std::string& text) {
  const auto characters = charactersOf(text);
  std::size_t first = 0;
  while (first < characters.size() && characters[first].isWhitespace()) ++first;
  std::string result;
  for (; first < characters.size(); ++first) result += characters[first].bytes;
  return result;
}

std::string trimmingTrailingWhitespaces(const std::string& text) {
  auto characters = charactersOf(text);
  while (!characters.empty() && characters.back().isWhitespace()) characters.pop_back();
  std::string result;
  for (const auto& character : characters) result += character.bytes;
  return result;
}

}  // namespace markdown::reference
