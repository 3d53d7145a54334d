#include "MarkdownEngine/List.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/ListReader.h"
#include "MarkdownEngine/PlainText.h"

namespace markdown {

std::optional<List> List::read(Reader& reader, Content& content) {
  // The blanks before the list were skipped on the way to it.
  const std::size_t start = reader.currentIndex();
  std::size_t indentation = 0;
  for (auto before = reader.previousCharacter();
       before && isSameLineWhitespace(graphemes::scalarAt(*before, 0).value);
       before = reader.previousCharacter()) {
    reader.rewindIndex();
    ++indentation;
  }
  reader.moveToIndex(start);

  content.blockStart = {};
  content.mayOverflow = false;
  if (!ListReader(reader, content).read(indentation)) return std::nullopt;
  return List{content.whole()};
}

void List::writeHtml(HtmlWriter& writer) const { writer.writeContent(components); }

void List::writePlainText(const Content& content, std::string& text) const {
  markdown::writePlainText(content, components, text);
}

}  // namespace markdown
