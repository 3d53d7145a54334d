#include "MarkdownEngine/ListReader.h"

#include "MarkdownEngine/FormattedText.h"

namespace markdown {
namespace {

using Kind = Component::Kind;

constexpr ByteSet bullets{"-*+"};
constexpr ByteSet orderedListMarkers{".)"};
constexpr std::size_t maxDigits = 9;

/// The value of up to nine digits; 1 if they aren't digits of ASCII.
std::uint64_t numberFrom(std::string_view digits) noexcept {
  std::uint64_t number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return 1;
    number = number * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  return number;
}

}  // namespace

bool ListReader::read(std::size_t indentation) {
  if (!open(indentation)) return false;
  while (!content_.openLists.empty()) {
    if (reader_.didReachEnd() || readLine() == Next::endList) close();
  }
  return true;
}

bool ListReader::open(std::size_t indentation) {
  OpenList opened;
  opened.indentation = indentation;
  std::uint64_t firstNumber = Component::unordered;
  // A nested list may begin where its line ends at once; it is empty then.
  if (!reader_.isAtNewline()) {
    if (!standsAtItem()) return false;
    Reader ahead = reader_;
    if (const auto digits = ahead.readNumbers(maxDigits)) {
      opened.isOrdered = true;
      firstNumber = numberFrom(digits->text);
    }
    opened.marker = ahead.string()[ahead.currentIndex()];
  }
  if (!content_.openLists.empty()) startNestedList(list());
  content_.add(Kind::listStart, reader_.currentIndex(), firstNumber);
  content_.openLists.push_back(opened);
  return true;
}

bool ListReader::standsAtItem() const {
  Reader ahead = reader_;
  const bool isNumbered = ahead.readNumbers(maxDigits).has_value();
  return ahead.readCharacter(isNumbered ? orderedListMarkers : bullets) && ahead.isAtSameLineWhitespace();
}

bool ListReader::isAtStartOfLine() const noexcept {
  return isNewline(graphemes::scalarBefore(reader_.string(), reader_.currentIndex()).value);
}

ListReader::Next ListReader::readLine() {
  const bool isNested = content_.openLists.size() > 1;
  if (reader_.isAtNewline()) return Next::endList;
  if (reader_.isAtSameLineWhitespace()) return readIndented();
  // An item at the start of a line belongs to the outermost list, however the lists in it are indented.
  if (isNested && isAtStartOfLine() && standsAtItem()) return Next::endList;
  if (reader_.isAtNumber()) return readNumbered();
  if (reader_.isAt('-') || reader_.isAt('*') || reader_.isAt('+')) return readBulleted();
  addTextToLastItem();
  return Next::goOn;
}

ListReader::Next ListReader::readIndented() {
  const std::size_t indentation = reader_.readWhitespaces()->count;
  if (indentation < list().indentation || reader_.didReachEnd()) return Next::endList;
  if (indentation > list().indentation && !open(indentation)) addTextToLastItem();
  return Next::goOn;
}

ListReader::Next ListReader::readNumbered() {
  const Reader start = reader_;
  if (!list().isOrdered) {
    addTextToLastItem();
    return Next::goOn;
  }
  static_cast<void>(reader_.readNumbers(maxDigits));
  const auto marker = reader_.readCharacter(orderedListMarkers);
  if (marker && *marker != list().marker) {
    reader_ = start;
    return Next::endList;
  }
  if (marker && reader_.readWhitespaces()) {
    addItem();
  } else {
    reader_ = start;
    addTextToLastItem();
  }
  return Next::goOn;
}

ListReader::Next ListReader::readBulleted() {
  Reader ahead = reader_;
  ahead.advanceIndex();
  if (!ahead.isAtSameLineWhitespace()) {
    addTextToLastItem();
    return Next::goOn;
  }
  if (!reader_.isAt(list().marker) || list().isOrdered) return Next::endList;
  reader_ = ahead;
  reader_.discardWhitespaces();
  addItem();
  return Next::goOn;
}

void ListReader::addItem() {
  if (list().hasItems) content_.add(Kind::itemEnd, reader_.currentIndex());
  list().hasItems = true;
  list().hasNestedList = false;
  content_.add(Kind::itemStart, reader_.currentIndex());
  readText();
}

void ListReader::readText() {
  // What stands before the last item of the outermost list is final, and so is that item as long as it has no
  // list.
  content_.mayOverflow = content_.openLists.size() == 1 && !list().hasNestedList;
  FormattedText::readLine(reader_, content_);
}

void ListReader::addTextToLastItem() {
  const std::size_t start = content_.components.size();
  content_.add(Kind::blank, reader_.currentIndex());
  readText();
  OpenList& current = list();
  if (!current.hasNestedList) return;
  // The text goes between the item's text so far and its nested list.
  setJump(current.jumpToNestedList, start);
  current.jumpToNestedList = addJump();
  setJump(current.jumpToNestedList, current.nestedListStart);
  setJump(current.jumpBehindNestedList, content_.components.size());
}

void ListReader::startNestedList(OpenList& around) {
  if (around.hasNestedList) {
    // The list that the item has so far is replaced: nothing leads to it any more.
    setJump(around.jumpToNestedList, content_.components.size());
  } else {
    around.hasNestedList = true;
    around.jumpToNestedList = addJump();
  }
  around.nestedListStart = content_.components.size();
}

void ListReader::close() {
  if (list().hasItems) content_.add(Kind::itemEnd, reader_.currentIndex());
  content_.add(Kind::listEnd, reader_.currentIndex(), list().isOrdered ? 1 : Component::unordered);
  content_.openLists.pop_back();
  if (!content_.openLists.empty()) list().jumpBehindNestedList = addJump();
}

std::size_t ListReader::addJump() {
  const std::size_t index = content_.components.size();
  content_.add(Kind::jump, reader_.currentIndex(), index + 1);
  return index;
}

}  // namespace markdown
