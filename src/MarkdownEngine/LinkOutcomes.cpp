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
  outermost_ = opener;
  innerLinks_ = 0;
  BlankCounter blanks(opener + 1);
  std::size_t index = opener + 1;
  while (true) {
    index = linkTextStops.find(text_.data(), index, text_.size());
    if (index == text_.size()) return fail(index);
    const char byte = text_[index];
    if (!isAscii(byte) || (byte >= '\n' && byte <= '\r')) {
      const auto newline = graphemes::whitespaceAtScalar(text_, index);
      if (newline.kind != Kind::newline) {
        ++index;
        continue;
      }
      if (newline.end == text_.size() || failedNewlines_.contains(index)) return fail(index);
      const auto known = linkEndsByNewline_.find(index);
      if (known != linkEndsByNewline_.end()) {
        if (innerLinks_ == 0) return succeed(index);
        closeInner(index, known->second);
        index = known->second;
        continue;
      }
      blanks.countBefore(text_, index);
      if (!blanks.breaksLine(text_, index) && beginsBlock(text_, newline.end)) return fail(index);
      newlines_.insert(index);
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
        if (!target) return fail(index);
        if (innerLinks_ == 0) return succeed(index);
        closeInner(index, target->linkEnd);
        elementEnd = target->linkEnd;
        break;
      }
      case '[':
      case '!': {
        const std::size_t bracket = byte == '[' ? index : index + 1;
        if (!isCharacter(text_, bracket, '[') || isBehindBackslash(text_, index)) break;
        if (failedOpeners_.contains(bracket)) return fail(index);
        openers_.insert(bracket);
        ++innerLinks_;
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
        if (index + 1 == text_.size() || stopsText(text_, index)) return fail(index);
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

void LinkOutcomes::closeInner(std::size_t index, std::size_t linkEnd) {
  const std::size_t opener = *openers_.last(outermost_, index);
  while (const auto newline = newlines_.last(opener, index)) {
    linkEndsByNewline_[*newline] = linkEnd;
    newlines_.erase(*newline);
  }
  openers_.erase(opener);
  --innerLinks_;
}

bool LinkOutcomes::succeed(std::size_t index) {
  while (const auto newline = newlines_.last(outermost_, index)) newlines_.erase(*newline);
  return true;
}

bool LinkOutcomes::fail(std::size_t index) {
  failedOpeners_.insert(outermost_);
  if (innerLinks_ > 0) failedOpeners_.takeOver(openers_, outermost_, index);
  failedNewlines_.takeOver(newlines_, outermost_, index);
  return false;
}

}  // namespace markdown
