#include "MarkdownEngine/Paragraph.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

namespace {

constexpr std::string_view start = "<p>";

}  // namespace

std::optional<Paragraph> Paragraph::read(Reader& reader, Content& content) {
  content.blockStart = start;
  content.mayOverflow = true;
  return Paragraph{FormattedText::read(reader, content)};
}

Paragraph Paragraph::readFallback(Reader& reader, Content& content) {
  const std::size_t begin = reader.currentIndex();
  Paragraph paragraph = *read(reader, content);
  if (reader.currentIndex() == begin) {
    content.components.clear();
    content.add(Component::Kind::escape, begin, 1);
    reader.advanceIndex();
    paragraph = *read(reader, content);
    paragraph.text.components.first = 0;
  }
  return paragraph;
}

void Paragraph::writeHtml(HtmlWriter& writer) const {
  if (!writer.context().content.isOverflowing) writer.write(start);
  writer.writeContent(text.components);
  writer.write("</p>");
}

void Paragraph::writePlainText(const Content& content, std::string& plainText) const {
  markdown::writePlainText(content, text.components, plainText);
}

}  // namespace markdown
