#include "MarkdownEngine/MarkdownParser.h"

#include "MarkdownEngine/Document.h"
#include "MarkdownEngine/TitleStorage.h"
#include "MarkdownEngine/ValidUtf8.h"

namespace markdown {

Markdown MarkdownParser::parse(std::string_view markdown) const {
  const ValidUtf8 valid(markdown);
  const Document document(valid.text());
  return {document.html(modifiers_, blockquoteFrame()), document.metadata(modifiers_), document.title()};
}

std::string MarkdownParser::html(std::string_view markdown) const {
  const ValidUtf8 valid(markdown);
  return Document(valid.text()).html(modifiers_, blockquoteFrame());
}

}  // namespace markdown
