#include "MarkdownEngine/MarkdownParser.h"

#include "MarkdownEngine/Document.h"
#include "MarkdownEngine/TitleStorage.h"
#include "MarkdownEngine/ValidUtf8.h"

namespace markdown {

Markdown MarkdownParser::parse(std::string_view markdown) const {
  const ValidUtf8 valid(markdown);
  const BlockquoteFrame frame = blockquoteFrame();
  Document document(valid.text(), {.modifiers = modifiers_, .blockquoteFrame = frame, .needsTitle = true});
  std::string html = document.html();
  return {std::move(html), document.metadata(), document.title()};
}

std::string MarkdownParser::html(std::string_view markdown) const {
  const ValidUtf8 valid(markdown);
  const BlockquoteFrame frame = blockquoteFrame();
  return Document(valid.text(), {.modifiers = modifiers_, .blockquoteFrame = frame, .needsTitle = false})
      .html();
}

}  // namespace markdown
