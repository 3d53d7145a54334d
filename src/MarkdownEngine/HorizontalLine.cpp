#include "MarkdownEngine/HorizontalLine.h"

#include "MarkdownEngine/HtmlWriter.h"

namespace markdown {

std::optional<HorizontalLine> HorizontalLine::read(Reader& reader, Content& /*content*/) {
  constexpr std::size_t minCount = 3;
  const char marker = reader.isAt('-') ? '-' : '*';
  if (reader.readCount(marker) < minCount) return std::nullopt;
  if (reader.didReachEnd()) return HorizontalLine{};
  // A refused line isn't read to its end: what stands behind the markers decides.
  if (!reader.isAtNewline()) return std::nullopt;
  reader.advanceIndex();
  return HorizontalLine{};
}

void HorizontalLine::writeHtml(HtmlWriter& writer) const { writer.write("<hr>"); }

}  // namespace markdown
