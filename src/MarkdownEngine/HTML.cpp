#include "MarkdownEngine/HTML.h"

#include "MarkdownEngine/HtmlWriter.h"

namespace markdown {

std::optional<HTML> HTML::read(Reader& reader, Content& /*content*/) {
  if (!reader.isAt('<')) return std::nullopt;
  const std::size_t start = reader.currentIndex();
  const auto end = reader.source().searches().html.findEnd(start);
  if (!end) return std::nullopt;
  reader.moveToIndex(*end);
  return HTML{reader.characters(start, *end)};
}

void HTML::writeHtml(HtmlWriter& writer) const { writer.write(string); }

}  // namespace markdown
