#include "MarkdownEngine/Heading.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

std::optional<Heading> Heading::read(Reader& reader, Content& content) {
  constexpr std::size_t maxLevel = 6;
  const std::size_t level = reader.readCount('#');
  if (level == 0 || level > maxLevel || !reader.readWhitespaces()) return std::nullopt;
  content.mayOverflow = false;
  Heading heading;
  heading.level = static_cast<int>(level);
  heading.text = FormattedText::read(reader, content, Terminators::lineFeed);
  return heading;
}

void Heading::writeHtml(HtmlWriter& writer) const {
  const char digit = static_cast<char>('0' + level);
  writer.write("<h");
  writer.write(digit);
  writer.write('>');
  const std::size_t start = writer.size();
  writer.writeContent(text.components);
  writer.truncate(start + lengthWithoutTrailingMarkers(writer.html(start)));
  writer.write("</h");
  writer.write(digit);
  writer.write('>');
}

void Heading::writePlainText(const Content& content, std::string& plainText) const {
  const std::size_t start = plainText.size();
  markdown::writePlainText(content, text.components, plainText);
  plainText.resize(start + lengthWithoutTrailingMarkers(std::string_view(plainText).substr(start)));
}

std::size_t lengthWithoutTrailingMarkers(std::string_view text) noexcept {
  std::size_t end = text.size();
  while (end > 0 && text[end - 1] == '#') --end;
  // The first "#" may belong to the character before it.
  if (end < text.size() && end > 0 && !graphemes::standsAlone(text, end)) {
    end = graphemes::characterEnd(text, graphemes::characterStart(text, end));
  }
  if (end == text.size()) return end;
  if (end == 0) return text.size() == 1 ? 1 : 0;
  return graphemes::characterStart(text, end);
}

}  // namespace markdown
