#pragma once

#include "unit/MarkdownEngine/reference/Characters.h"

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace markdown::reference {

/// The one failure of a reading operation.
struct ReadError {};

/// The scanner in its plainest form: a list of characters and a position in it.
class ReferenceReader {
 public:
  explicit ReferenceReader(std::string_view text)
      : characters_(std::make_shared<const std::vector<Character>>(charactersOf(text))) {}

  std::size_t currentIndex = 0;

  bool didReachEnd() const { return currentIndex == endIndex(); }
  std::size_t endIndex() const { return characters_->size(); }
  const Character& currentCharacter() const { return characters_->at(currentIndex); }
  std::optional<Character> previousCharacter() const;
  std::optional<Character> nextCharacter() const;
  bool previousIs(std::string_view text) const;

  void read(std::string_view character);
  struct UntilOptions {
    bool required = true;
    bool allowWhitespace = true;
    bool allowLineBreaks = false;
    std::string_view balanceAgainst = {};
  };
  std::string readUntil(std::string_view terminator, UntilOptions options);
  std::size_t readCount(std::string_view character);
  std::vector<Character> readCharacters(const std::function<bool(const Character&)>& predicate,
                                        std::size_t max = std::numeric_limits<std::size_t>::max());
  Character readCharacterIn(std::string_view asciiSet);
  std::size_t readWhitespaces();
  std::string readUntilEndOfLine();
  void discardWhitespaces();
  void discardWhitespacesAndNewlines();
  void advanceIndex(std::size_t count = 1) { currentIndex += count; }
  std::string characters(std::size_t from, std::size_t to) const;

 private:
  std::shared_ptr<const std::vector<Character>> characters_;
};

std::string trimmingLeadingWhitespaces(const std::string& text);
std::string trimmingTrailingWhitespaces(const std::string& text);

}  // namespace markdown::reference
