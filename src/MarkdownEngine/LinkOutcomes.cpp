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

constexpr std::uint64_t openerEntry(std::size_t position) noexcept { return std::uint64_t{position} << 1; }
constexpr std::uint64_t newlineEntry(std::size_t position) noexcept {
  return std::uint64_t{position} << 1 | 1;
}
constexpr bool isNewlineEntry(std::uint64_t entry) noexcept { return (entry & 1) != 0; }
constexpr std::size_t position(std::uint64_t entry) noexcept { return entry >> 1; }

constexpr ByteSet linkTextStops{"[]!`<&\n\v\f\r\xC2\xE2"};

}  // namespace

bool LinkOutcomes::isLink(std::size_t opener) {
  if (failedOpeners_.contains(opener)) return false;
  path_.clear();
  openLinks_ = 0;
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
        if (openLinks_ == 1) return true;
        closeInner(index);
        continue;
      }
      blanks.countBefore(text_, index);
      if (!blanks.breaksLine(text_, index) && beginsBlock(text_, newline.end)) return fail();
      path_.push_back(newlineEntry(index));
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
        if (openLinks_ == 1) return true;
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

void LinkOutcomes::open(std::size_t opener) {
  path_.push_back(openerEntry(opener));
  ++openLinks_;
}

void LinkOutcomes::closeInner(std::size_t linkEnd) {
  for (; isNewlineEntry(path_.back()); path_.pop_back()) linkEndsByNewline_[position(path_.back())] = linkEnd;
  path_.pop_back();
  --openLinks_;
}

bool LinkOutcomes::fail() {
  for (const std::uint64_t entry : path_) {
    (isNewlineEntry(entry) ? failedNewlines_ : failedOpeners_).insert(position(entry));
  }
  return false;
}

}  // namespace markdown
