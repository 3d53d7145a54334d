#include "MarkdownEngine/Blockquote.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

std::optional<Blockquote> Blockquote::read(Reader& reader, Content& content) {
  if (!reader.read('>') || !reader.readWhitespaces()) return std::nullopt;
  if (content.overflowWriter != nullptr) {
    content.blockStart = content.overflowWriter->context().blockquoteFrame.before;
    content.mayOverflow = true;
  }
  Blockquote quote{FormattedText::readLine(reader, content)};
  while (!reader.didReachEnd() && !reader.isAtNewline()) {
    static_cast<void>(reader.read('>'));
    FormattedText::readLine(reader, content);
  }
  quote.text.components = content.whole();
  return quote;
}

void Blockquote::writeHtml(HtmlWriter& writer) const {
  if (!writer.context().content.isOverflowing) writer.write(writer.context().blockquoteFrame.before);
  writer.writeContent(text.components);
  writer.write(writer.context().blockquoteFrame.after);
}

void Blockquote::writePlainText(const Content& content, std::string& plainText) const {
  markdown::writePlainText(content, text.components, plainText);
}

}  // namespace markdown
