#include "MarkdownEngine/MarkdownImage.h"

#include "MarkdownEngine/FormattedTextParser.h"
#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown::MarkdownImage {

std::optional<Image> Image::read(Reader& reader, Content& content) {
  const std::size_t start = reader.currentIndex();
  if (!reader.read('!') || !reader.isAt('[')) return std::nullopt;
  reader.moveToIndex(start);
  content.mayOverflow = false;
  Image image;
  image.components.first = content.components.size();
  if (!FormattedTextParser(reader, content, Terminators::none).parseImage()) return std::nullopt;
  image.components.last = content.components.size();
  return image;
}

void Image::writeHtml(HtmlWriter& writer) const { writer.writeContent(components); }

void Image::writePlainText(const Content& content, std::string& text) const {
  markdown::writePlainText(content, components, text);
}

}  // namespace markdown::MarkdownImage
