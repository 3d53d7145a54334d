#include "MarkdownEngine/Paragraph.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

std::optional<Paragraph> Paragraph::read(Reader& reader, Content& content) {
  return Paragraph{FormattedText::read(reader, content)};
}

Paragraph Paragraph::readFallback(Reader& reader, Content& content) {
  const std::size_t start = reader.currentIndex();
  Paragraph paragraph{FormattedText::read(reader, content)};
  if (reader.currentIndex() == start) {
    content.components.truncate(paragraph.text.components.first);
    content.add(Component::Kind::escape, start, 1);
    reader.advanceIndex();
    paragraph.text.components.last = FormattedText::read(reader, content).components.last;
  }
  return paragraph;
}

void Paragraph::writeHtml(HtmlWriter& writer) const {
  writer.write("<p>");
  writer.writeContent(text.components);
  writer.write("</p>");
}

void Paragraph::writePlainText(const Content& content, std::string& plainText) const {
  markdown::writePlainText(content, text.components, plainText);
}

}  // namespace markdown
