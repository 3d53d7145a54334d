#include "MarkdownEngine/LinkOutcomes.h"

#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/GraphemeClusters.h"
#include "MarkdownEngine/Linebreaks.h"
#include "MarkdownEngine/Link.h"

#include <optional>

namespace markdown {
namespace {

using graphemes::isBehindBackslash;
using graphemes::isCharacter;
using Kind = graphemes::Whitespace::Kind;

constexpr ByteSet linkTextStops{"[]!`<&\n\v\f\r\xC2\xE2"};

}  // namespace

bool LinkOutcomes::isLink(std::size_t opener) {
  if (failedOpeners_.contains(opener)) return false;
  openLinks_.clear();
  passedNewlines_.clear();
  open(opener);
  BlankCounter blanks(opener + 1);
  std::size_t index = opener + 1;
  while (true) {
    index = linkTextStops.find(text_.data(), index, text_.size());
    if (index == text_.size()) return fail();
    const char byte = text_[index];
    if (!isAscii(byte) || (byte >= '\n' && byte <= '\r')) {
      const auto newline = graphemes::whitespaceAtScalar(text_, index);
      if (newline.kind != Kind::newline) {
        ++index;
        continue;
      }
      if (newline.end == text_.size() || failedNewlines_.contains(index)) return fail();
      const auto known = linkEndsByNewline_.find(index);
      if (known != linkEndsByNewline_.end()) {
        index = known->second;
        if (openLinks_.size() == 1) return true;
        closeInner(index);
        continue;
      }
      blanks.countBefore(text_, index);
      if (!blanks.breaksLine(text_, index) && beginsBlock(text_, newline.end)) return fail();
      passedNewlines_.push_back(index);
      index = newline.end;
      blanks.passNewline(index);
      continue;
    }
    if (!graphemes::standsAlone(text_, index)) {
      ++index;
      continue;
    }
    std::optional<std::size_t> elementEnd;
    switch (byte) {
      case ']': {
        if (isBehindBackslash(text_, index)) break;
        const auto target = Link::Target::readAt(text_, index, searches_);
        if (!target) return fail();
        if (openLinks_.size() == 1) return true;
        closeInner(target->linkEnd);
        elementEnd = target->linkEnd;
        break;
      }
      case '[':
      case '!': {
        const std::size_t bracket = byte == '[' ? index : index + 1;
        if (!isCharacter(text_, bracket, '[') || isBehindBackslash(text_, index)) break;
        if (failedOpeners_.contains(bracket)) return fail();
        open(bracket);
        elementEnd = bracket + 1;
        break;
      }
      case '`':
        if (!isBehindBackslash(text_, index)) {
          elementEnd = searches_.backticks.find(index + 1);
          if (elementEnd) ++*elementEnd;
        }
        break;
      case '<':
        if (index + 1 == text_.size() || stopsText(text_, index)) return fail();
        if (!isBehindBackslash(text_, index)) elementEnd = searches_.html.findEnd(index);
        break;
      default:
        elementEnd = searches_.semicolons.find(index);
        if (elementEnd) ++*elementEnd;
        break;
    }
    index = elementEnd.value_or(index + 1);
  }
}

void LinkOutcomes::open(std::size_t opener) { openLinks_.push_back({opener, passedNewlines_.size()}); }

void LinkOutcomes::closeInner(std::size_t linkEnd) {
  const std::size_t first = openLinks_.back().firstNewline;
  for (std::size_t i = first; i < passedNewlines_.size(); ++i)
    linkEndsByNewline_[passedNewlines_[i]] = linkEnd;
  passedNewlines_.truncate(first);
  openLinks_.pop_back();
}

bool LinkOutcomes::fail() {
  for (const OpenLink& link : openLinks_) failedOpeners_.insert(link.opener);
  for (const std::size_t newline : passedNewlines_) failedNewlines_.insert(newline);
  return false;
}

}  // namespace markdown
