#include "MarkdownEngine/Blockquote.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

std::optional<Blockquote> Blockquote::read(Reader& reader, Content& content) {
  if (!reader.read('>') || !reader.readWhitespaces()) return std::nullopt;
  Blockquote quote{FormattedText::readLine(reader, content)};
  while (!reader.didReachEnd() && !reader.isAtNewline()) {
    static_cast<void>(reader.read('>'));
    quote.text.components.last = FormattedText::readLine(reader, content).components.last;
  }
  return quote;
}

void Blockquote::writeHtml(HtmlWriter& writer) const {
  writer.write(writer.context().blockquoteFrame.before);
  writer.writeContent(text.components);
  writer.write(writer.context().blockquoteFrame.after);
}

void Blockquote::writePlainText(const Content& content, std::string& plainText) const {
  markdown::writePlainText(content, text.components, plainText);
}

}  // namespace markdown
