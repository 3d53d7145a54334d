#include "MarkdownEngine/Link.h"

#include "MarkdownEngine/GraphemeClusters.h"

namespace markdown {

std::optional<Link::Target> Link::Target::readAt(std::string_view text, std::size_t closingBracket,
                                                 InlineSearches& searches) {
  const std::size_t opener = closingBracket + 1;
  const bool isUrl = graphemes::isCharacter(text, opener, '(');
  if (!isUrl && !graphemes::isCharacter(text, opener, '[')) return std::nullopt;
  const std::size_t begin = opener + 1;
  const auto end = isUrl ? searches.parentheses.findClosing(begin) : searches.brackets.find(begin);
  if (!end) return std::nullopt;
  return Target{isUrl ? Kind::url : Kind::reference, begin, *end, *end + 1};
}

}  // namespace markdown
