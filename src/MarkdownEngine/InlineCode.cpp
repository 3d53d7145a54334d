#include "MarkdownEngine/InlineCode.h"

namespace markdown {

std::optional<InlineCode> InlineCode::read(Reader& reader, Content& /*content*/) {
  if (!reader.read('`')) return std::nullopt;
  const std::size_t start = reader.currentIndex();
  const auto closing = reader.source().searches().backticks.find(start);
  if (!closing) return std::nullopt;
  reader.moveToIndex(*closing + 1);
  return InlineCode{reader.characters(start, *closing)};
}

}  // namespace markdown
