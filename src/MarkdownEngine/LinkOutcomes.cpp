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
  openers_.clear();
  newlines_.clear();
  openers_.push(opener);
  std::size_t innerLinks = 0;
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
        if (innerLinks == 0) return true;
        closeInner(known->second);
        --innerLinks;
        index = known->second;
        continue;
      }
      blanks.countBefore(text_, index);
      if (!blanks.breaksLine(text_, index) && beginsBlock(text_, newline.end)) return fail();
      newlines_.push(index);
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
        if (innerLinks == 0) return true;
        closeInner(target->linkEnd());
        --innerLinks;
        elementEnd = target->linkEnd();
        break;
      }
      case '[':
      case '!': {
        const std::size_t bracket = byte == '[' ? index : index + 1;
        if (!isCharacter(text_, bracket, '[') || isBehindBackslash(text_, index)) break;
        if (failedOpeners_.contains(bracket)) return fail();
        openers_.push(bracket);
        ++innerLinks;
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

void LinkOutcomes::closeInner(std::size_t linkEnd) {
  for (; !newlines_.isEmpty() && newlines_.top() > openers_.top(); newlines_.pop()) {
    linkEndsByNewline_[newlines_.top()] = linkEnd;
  }
  openers_.pop();
}

bool LinkOutcomes::fail() {
  for (; !openers_.isEmpty(); openers_.pop()) failedOpeners_.insert(openers_.top());
  for (; !newlines_.isEmpty(); newlines_.pop()) failedNewlines_.insert(newlines_.top());
  return false;
}

}  // namespace markdown
