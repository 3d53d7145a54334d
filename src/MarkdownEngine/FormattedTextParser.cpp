#include "MarkdownEngine/FormattedTextParser.h"

#include "MarkdownEngine/HTML.h"
#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/InlineCode.h"
#include "MarkdownEngine/Readable.h"
#include "MarkdownEngine/TextStops.h"

#include <algorithm>

namespace markdown {
namespace {

using graphemes::isBehindBackslash;
using graphemes::isCharacter;
using graphemes::standsAlone;
using graphemes::Whitespace;
using Kind = Component::Kind;

}  // namespace

FormattedTextParser::FormattedTextParser(Reader& reader, Content& content, Terminators terminators) noexcept
    : reader_(reader),
      content_(content),
      text_(reader.string()),
      index_(reader.currentIndex()),
      pendingStart_(index_),
      terminators_(terminators),
      blanks_(index_),
      firstOpenText_(content.openTexts.size()) {}

void FormattedTextParser::parse() {
  const std::size_t end = text_.size();
  while (index_ < end) {
    index_ = findTextStop(text_, index_);
    if (index_ == end) break;
    if (content_.shouldOverflow() && content_.openTexts.empty()) content_.overflow();
    if (parseCharacter(text_[index_]) == Next::leave) break;
  }
  addTrimmedPendingText();
  handleUnterminatedStyleMarkers();
  reader_.moveToIndex(index_);
}

bool FormattedTextParser::parseImage() {
  openLink(index_ + 1, Kind::imageStart);
  if (content_.openTexts.size() == firstOpenText_) return false;
  while (content_.openTexts.size() > firstOpenText_) {
    index_ = findTextStop(text_, index_);
    parseCharacter(text_[index_]);
  }
  reader_.moveToIndex(index_);
  return true;
}

FormattedTextParser::Next FormattedTextParser::parseCharacter(char byte) {
  if (!isAscii(byte) || isWhitespace(static_cast<unsigned char>(byte))) {
    const Whitespace found = graphemes::whitespaceAtScalar(text_, index_);
    if (found.kind == Whitespace::Kind::newline) return parseNewline(found);
    if (found.kind == Whitespace::Kind::sameLine) return parseWhitespace(found);
    ++index_;
    return Next::goOn;
  }
  if (!standsAlone(text_, index_)) {
    ++index_;
    return Next::goOn;
  }
  switch (byte) {
    case '*':
    case '_':
    case '~':
      parseStyleMarker();
      break;
    case '<':
      return parseLess();
    case '>':
      addEscape();
      break;
    case '&':
      parseAmpersand();
      break;
    case '\\':
      addPendingText();
      skipTo(index_ + 1);
      break;
    case '`':
      parseInlineCode();
      break;
    case '[':
      openLink(index_, Kind::linkStart);
      break;
    case '!':
      if (isCharacter(text_, index_ + 1, '[')) {
        openLink(index_ + 1, Kind::imageStart);
      } else {
        ++index_;
      }
      break;
    case ']':
      if (!contains(terminators_, Terminators::closingBracket) || isBehindBackslash(text_, index_)) {
        ++index_;
      } else {
        closeLink();
      }
      break;
    default:
      if (contains(terminators_, Terminators::pipe) && !isBehindBackslash(text_, index_)) return Next::leave;
      ++index_;
      break;
  }
  return Next::goOn;
}

FormattedTextParser::Next FormattedTextParser::parseWhitespace(Whitespace found) {
  if (found.end == text_.size()) return Next::leave;
  const Whitespace next = graphemes::whitespaceAt(text_, found.end);
  if (next.kind == Whitespace::Kind::none) {
    index_ = found.end;
  } else {
    addPendingText();
    skipTo(found.end);
  }
  return Next::goOn;
}

FormattedTextParser::Next FormattedTextParser::parseNewline(Whitespace newline) {
  const bool isLineFeed = text_[index_] == '\n';
  if (isLineFeed && contains(terminators_, Terminators::lineFeed) && !isBehindBackslash(text_, index_)) {
    return Next::leave;
  }
  addPendingText();
  if (newline.end == text_.size()) return Next::leave;
  blanks_.countBefore(text_, index_);
  if (blanks_.breaksLine(text_, index_)) {
    content_.add(Kind::linebreak, index_);
  } else if (beginsBlock(text_, newline.end)) {
    return Next::leave;
  } else if (graphemes::whitespaceAt(text_, newline.end).kind == Whitespace::Kind::none) {
    content_.add(Kind::blank, index_);
  }
  skipTo(newline.end);
  blanks_.passNewline(index_);
  return Next::goOn;
}

FormattedTextParser::Next FormattedTextParser::parseLess() {
  if (index_ + 1 == text_.size()) {
    ++index_;
    return Next::leave;
  }
  if (stopsText(text_, index_)) return Next::leave;
  Reader reader = readerHere();
  if (const auto html = readOrRewind<HTML>(reader, content_)) {
    addPendingText();
    content_.add(Kind::html, index_, html->string.size());
    skipTo(reader.currentIndex());
  } else {
    addEscape();
  }
  return Next::goOn;
}

void FormattedTextParser::parseInlineCode() {
  Reader reader = readerHere();
  if (const auto code = readOrRewind<InlineCode>(reader, content_)) {
    addPendingText();
    content_.add(Kind::inlineCode, index_ + 1, code->code.size());
    skipTo(reader.currentIndex());
  } else {
    ++index_;
  }
}

void FormattedTextParser::parseAmpersand() {
  const auto semicolon = reader_.source().searches().semicolons.find(index_);
  if (semicolon) {
    index_ = *semicolon + 1;
  } else {
    addEscape();
  }
}

void FormattedTextParser::openLink(std::size_t bracket, Kind kind) {
  // What stands in a link is known to succeed: otherwise the link around it would have failed.
  const bool isInLink = content_.openTexts.size() > firstOpenText_;
  if (isBehindBackslash(text_, index_) || (!isInLink && !reader_.source().links().isLink(bracket))) {
    ++index_;
    return;
  }
  addPendingText();
  content_.openTexts.push_back({content_.components.size(), terminators_, styles_});
  content_.add(kind, index_, content_.links.size());
  content_.links.push_back({index_, {}});
  terminators_ = Terminators::closingBracket;
  styles_ = {};
  skipTo(bracket + 1);
}

void FormattedTextParser::closeLink() {
  addTrimmedPendingText();
  handleUnterminatedStyleMarkers();
  const OpenText around = content_.openTexts.back();
  content_.openTexts.pop_back();
  const Component& start = content_.components[around.linkStart];
  Link& link = content_.links[start.extra];
  link.target = Link::Target::readAt(text_, index_, reader_.source().searches()).value();
  content_.add(start.kind == Kind::linkStart ? Kind::linkEnd : Kind::imageEnd, index_, start.extra);
  terminators_ = around.terminators;
  styles_ = around.styles;
  skipTo(link.target.linkEnd());
}

void FormattedTextParser::parseStyleMarker() {
  Reader reader = readerHere();
  auto read = readOrRewind<TextStyleMarker>(reader, content_);
  if (!read) {
    ++index_;
    return;
  }
  addPendingText();
  const std::size_t begin = index_;
  index_ = reader.currentIndex();
  if (styles_.contains(read->style)) {
    closeStyle(*read);
  } else {
    styles_.styles |= ActiveStyles::bit(read->style);
    ++styles_.count;
    content_.activeMarkers.push_back({0, content_.components.size() & Content::maxPosition});
  }
  content_.add(Kind::styleMarker, begin, packed(*read));
  pendingStart_ = index_;
}

void FormattedTextParser::closeStyle(TextStyleMarker& closing) {
  if (closing.style == TextStyle::bold && styles_.contains(TextStyle::italic) &&
      (isCharacter(text_, index_, '*') || isCharacter(text_, index_, '_'))) {
    closing.style = TextStyle::italic;
    closing.length = 1;
    --index_;
  }
  closing.kind = TextStyleMarker::Kind::closing;
  while (styles_.count > 0) {
    const ActiveMarker active = content_.activeMarkers.back();
    content_.activeMarkers.pop_back();
    --styles_.count;
    TextStyleMarker opening = marker(active);
    styles_.styles &= static_cast<std::uint8_t>(~ActiveStyles::bit(opening.style));
    if (opening.style == closing.style) return;
    opening.isValid = false;
    setMarker(active, opening);
  }
}

void FormattedTextParser::handleUnterminatedStyleMarkers() {
  using LeftOver = TextStyleMarker::LeftOver;
  if (styles_.count == 0) return;
  constexpr std::size_t absent = ~std::size_t{0};
  const std::size_t firstMarker = content_.activeMarkers.size() - styles_.count;
  const auto active = [&](std::size_t i) { return content_.activeMarkers[firstMarker + i]; };
  std::size_t bold = absent;
  std::size_t italic = absent;
  for (std::size_t i = 0; i < styles_.count; ++i) {
    const TextStyle style = marker(active(i)).style;
    if (style == TextStyle::bold) bold = i;
    if (style == TextStyle::italic) italic = i;
  }
  bool isRescued = false;
  if (bold != absent && italic != absent) {
    const ActiveMarker first = active(std::min(bold, italic));
    const ActiveMarker second = active(std::max(bold, italic));
    TextStyleMarker opening = marker(first);
    TextStyleMarker closing = marker(second);
    isRescued = markerBegin(second) != markerBegin(first) + opening.length;
    if (isRescued) {
      if (opening.style == TextStyle::bold) opening.leftOver = LeftOver::prefix;
      if (closing.style == TextStyle::bold) closing.leftOver = LeftOver::suffix;
      opening.style = closing.style = TextStyle::italic;
      closing.kind = TextStyleMarker::Kind::closing;
      setMarker(first, opening);
      setMarker(second, closing);
    }
  }
  for (std::size_t i = 0; i < styles_.count; ++i) {
    if (isRescued && (i == bold || i == italic)) continue;
    TextStyleMarker unterminated = marker(active(i));
    unterminated.isValid = false;
    setMarker(active(i), unterminated);
  }
  content_.activeMarkers.truncate(firstMarker);
  styles_ = {};
}

Reader FormattedTextParser::readerHere() const noexcept {
  Reader reader = reader_;
  reader.moveToIndex(index_);
  return reader;
}

TextStyleMarker FormattedTextParser::marker(ActiveMarker active) const noexcept {
  if (active.isPlaced) return content_.placedMarkers[active.index].marker;
  return unpacked(content_.components[active.index].extra);
}

std::size_t FormattedTextParser::markerBegin(ActiveMarker active) const noexcept {
  return active.isPlaced ? content_.placedMarkers[active.index].begin
                         : content_.components[active.index].begin;
}

void FormattedTextParser::setMarker(ActiveMarker active, const TextStyleMarker& marker) {
  if (active.isPlaced) {
    const PlacedMarker& placed = content_.placedMarkers[active.index];
    content_.overflowWriter->replaceMarker(placed, marker);
  } else {
    content_.components[active.index].extra = packed(marker);
  }
}

void FormattedTextParser::addPendingText() {
  if (pendingStart_ < index_) content_.addText(pendingStart_, index_);
  pendingStart_ = index_;
}

void FormattedTextParser::addTrimmedPendingText() {
  const std::size_t size =
      trimmingTrailingWhitespaces(text_.substr(pendingStart_, index_ - pendingStart_)).size();
  if (size > 0) content_.addText(pendingStart_, pendingStart_ + size);
  pendingStart_ = index_;
}

void FormattedTextParser::skipTo(std::size_t index) noexcept {
  index_ = index;
  pendingStart_ = index;
}

void FormattedTextParser::addEscape() {
  addPendingText();
  content_.add(Kind::escape, index_, 1);
  skipTo(index_ + 1);
}

}  // namespace markdown
