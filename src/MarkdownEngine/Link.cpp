#include "MarkdownEngine/Link.h"

#include "MarkdownEngine/GraphemeClusters.h"

namespace markdown {
namespace {

constexpr std::size_t maxPosition = ~std::size_t{0} >> 1;

}  // namespace

std::optional<Link::Target> Link::Target::readAt(std::string_view text, std::size_t closingBracket,
                                                 InlineSearches& searches) {
  const std::size_t opener = closingBracket + 1;
  const bool isUrl = graphemes::isCharacter(text, opener, '(');
  if (!isUrl && !graphemes::isCharacter(text, opener, '[')) return std::nullopt;
  const std::size_t begin = opener + 1;
  const auto end = isUrl ? searches.parentheses.findClosing(begin) : searches.brackets.find(begin);
  if (!end) return std::nullopt;
  Target target;
  target.begin = begin;
  target.end = *end & maxPosition;
  target.isReference = isUrl ? 0 : 1;
  return target;
}

}  // namespace markdown
