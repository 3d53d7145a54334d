#pragma once

#include "MarkdownEngine/Blockquote.h"
#include "MarkdownEngine/CodeBlock.h"
#include "MarkdownEngine/HTML.h"
#include "MarkdownEngine/Heading.h"
#include "MarkdownEngine/HorizontalLine.h"
#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/List.h"
#include "MarkdownEngine/MarkdownImage.h"
#include "MarkdownEngine/Paragraph.h"
#include "MarkdownEngine/Readable.h"
#include "MarkdownEngine/Table.h"

#include <string_view>
#include <variant>

namespace markdown {

/// What every block can do: read itself, write itself as HTML and as plain text, and name its modifiers'
/// target.
template <typename Element>
concept Fragment = Readable<Element> &&
    requires(const Element& element, HtmlWriter& writer, const Content& content, std::string& text) {
  element.writeHtml(writer);
  element.writePlainText(content, text);
  { Element::modifierTarget } -> std::convertible_to<Modifier::Target>;
};

static_assert(Fragment<Heading> && Fragment<Paragraph> && Fragment<HorizontalLine> && Fragment<Blockquote> &&
              Fragment<CodeBlock> && Fragment<List> && Fragment<HTML> && Fragment<Table> &&
              Fragment<MarkdownImage::Image>);

/// A block of the document and the text from which it was read.
struct ParsedFragment {
  std::variant<Paragraph, Heading, HorizontalLine, Blockquote, CodeBlock, List, HTML, Table,
               MarkdownImage::Image>
      fragment;
  std::string_view rawString;
};

}  // namespace markdown
