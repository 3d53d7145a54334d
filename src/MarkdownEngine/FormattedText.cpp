#include "MarkdownEngine/FormattedText.h"

#include "MarkdownEngine/FormattedTextParser.h"

namespace markdown {

FormattedText FormattedText::read(Reader& reader, Content& content, Terminators terminators) {
  FormattedText text;
  text.components.first = content.components.size();
  FormattedTextParser parser(reader, content, terminators);
  parser.parse();
  text.components.last = content.components.size();
  return text;
}

FormattedText FormattedText::readLine(Reader& reader, Content& content) {
  const FormattedText text = read(reader, content, Terminators::lineFeed);
  if (!reader.didReachEnd()) reader.advanceIndex();
  return text;
}

}  // namespace markdown
