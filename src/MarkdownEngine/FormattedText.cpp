#include "MarkdownEngine/FormattedText.h"

#include "MarkdownEngine/FormattedTextParser.h"

namespace markdown {

FormattedText FormattedText::read(Reader& reader, Content& content, Terminators terminators) {
  const std::size_t first = content.components.size();
  FormattedTextParser(reader, content, terminators).parse();
  // A part of the text may have been written already.
  const std::size_t last = content.components.size();
  return {{content.isOverflowing ? 0 : first, last}};
}

FormattedText FormattedText::readLine(Reader& reader, Content& content) {
  const FormattedText text = read(reader, content, Terminators::lineFeed);
  if (!reader.didReachEnd()) reader.advanceIndex();
  return text;
}

}  // namespace markdown
