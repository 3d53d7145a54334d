#include "Components/MarkdownHtmlHelper.h"

#include "Platform/NSAppearance.h"

#include <utility>

namespace velkin {
namespace {

/// The colours of the page that change with the mode.
struct PageColours {
  std::string_view table;
  std::string_view background;
  std::string_view text;
  std::string_view inlineCode;
  std::string_view codeBlock;
  std::string_view codeBlockEdge;
  std::string_view copyButton;
};

constexpr PageColours darkPage{
    .table = "#0D1117",
    .background = "#161B22",
    .text = "#E6EDF3",
    .inlineCode = "#484C53",
    .codeBlock = "#20242A",
    .codeBlockEdge = "#555555",
    .copyButton = "#EEEEEE",
};
constexpr PageColours lightPage{
    .table = "#D4D2D1",
    .background = "#F0F0F4",
    .text = "#333344",
    .inlineCode = "#DDDDEE",
    .codeBlock = "white",
    .codeBlockEdge = "#555555",
    .copyButton = "#333344",
};

struct QuoteColours {
  std::string_view background;
  std::string_view border;
  std::string_view text;
};

constexpr QuoteColours darkQuote{.background = "black", .border = "#834C49", .text = "#E6EDF3"};
constexpr QuoteColours lightQuote{.background = "white", .border = "#834C49", .text = "#333344"};

using Colour = std::string_view PageColours::*;

/// A piece of the style sheet and the colour that stands behind it, if one does.
struct StylePiece {
  std::string_view text;
  Colour colour = nullptr;
};

constexpr StylePiece styleSheet[] = {
    {R"(<!DOCTYPE html>
<html>
<head>
<style>
    /* Link (regular, visited) */
    a:link { color: #2F81F7; }
    a:visited { color: #2F815C; }

    /* Style for inline code blocks */
    code {
        font-family: -apple-system, BlinkMacSystemFont, "Segoe UI", Roboto, Helvetica, monospace;
        background-color: )",
     &PageColours::inlineCode},
    {R"(;
        border-radius: 5px;
        color: )",
     &PageColours::text},
    {R"(;
        font-size: 0.85em;
        padding: 0.2em 0.4em;
        display: inline-block;
        word-wrap: break-word;
    }

    /* Style for block code blocks */
    pre {
        font-family: -apple-system, BlinkMacSystemFont, "Segoe UI", Roboto, Helvetica, monospace;
        background-color: )",
     &PageColours::codeBlock},
    {R"(;
        border: 1px solid #ddd;
        border-left: 3px solid )",
     &PageColours::codeBlockEdge},
    {R"(;
        border-radius: 5px;
        page-break-inside: avoid;
        font-size: 15px;
        line-height: 1.6;
        margin-bottom: 0em;
        max-width: 100%;
        overflow: auto;
        padding: 0.5em 0.5em 0;
        display: block;
        word-wrap: break-word;
        position: relative;
    }

    /* Style for the copy button */
    .copy-button {
        position: absolute;
        top: 8px;
        right: 8px;
        z-index: 10;
        cursor: pointer;
        padding: 5px;
        color: )",
     &PageColours::codeBlock},
    {R"(;
        background-color: )",
     &PageColours::copyButton},
    {R"(;
        border: none;
        border-radius: 3px;
        font-size: 12px;
    }

    /* Style for strikethrough text */
    del {
        text-decoration: line-through;
    }

    table {
        border-collapse: collapse;
        border-radius: 3px;
        border-color: )",
     &PageColours::table},
    {R"(;
        width: 100%;
    }
    th, td {
        border: 1px solid )",
     &PageColours::table},
    {R"(;
        background-color: )",
     &PageColours::table},
    {R"(;
        padding: 8px;
    }
    th {
        background-color: )",
     &PageColours::table},
    {R"(;
        color: )",
     &PageColours::text},
    {R"(;
        text-align: left;
    }
    tr:nth-child(even){background-color: #2A3338}
    tr:hover {background-color: #555;}
    td {
        color: )",
     &PageColours::text},
    {R"(;
    }
    body {
        font-family: -apple-system, BlinkMacSystemFont, "Segoe UI", Roboto, Helvetica;
        background-color: )",
     &PageColours::background},
    {R"(;
        color: )",
     &PageColours::text},
    {R"(;
    }
</style>
</head>
<body>
)"},
};

constexpr std::string_view copyScript = R"(
function copyCode(button) {
    const pre = button.parentNode;
    const range = document.createRange();
    range.selectNode(pre.querySelector('code'));
    window.getSelection().addRange(range);
    try {
        const successful = document.execCommand('copy');
        const msg = successful ? 'successful' : 'unsuccessful';
        console.log('Copy command was ' + msg);
    } catch (err) {
        console.log('Oops, unable to copy');
    }
    window.getSelection().removeAllRanges();
}
)";

/// Of the button in each code block.
constexpr std::string_view copyHandler = "copyCode(this)";

}  // namespace

MarkdownHtmlHelper::MarkdownHtmlHelper() : MarkdownHtmlHelper(platform::NSAppearance::isDarkNow()) {}

markdown::MarkdownParser MarkdownHtmlHelper::makeParser() {
  return makeParser(std::function<bool()>(platform::NSAppearance::isDarkNow));
}

std::string MarkdownHtmlHelper::makeHTMLString(std::string_view markdown) const {
  constexpr std::size_t styleSheetSize = 4096;
  const PageColours& colours = isDarkMode_ ? darkPage : lightPage;
  std::string page;
  page.reserve(styleSheetSize + markdown.size());
  for (const StylePiece& piece : styleSheet) {
    page.append(piece.text);
    if (piece.colour != nullptr) page.append(colours.*piece.colour);
  }
  page.append(markdown);
  page.append("\n<script>").append(copyScript).append("</script>\n</body>\n</html>\n");
  return page;
}

std::vector<std::string> MarkdownHtmlHelper::pageScripts() {
  return {std::string(copyScript), std::string(copyHandler)};
}

std::string MarkdownHtmlHelper::makeQuoteHTMLString(std::string_view body) const {
  const markdown::BlockquoteFrame frame = blockquoteFrame();
  std::string quote = frame.before;
  quote.append(body).append(frame.after);
  return quote;
}

markdown::BlockquoteFrame MarkdownHtmlHelper::blockquoteFrame() const {
  const QuoteColours& colours = isDarkMode_ ? darkQuote : lightQuote;
  markdown::BlockquoteFrame frame;
  frame.before = "<blockquote \n    style=\"background: ";
  frame.before.append(colours.background).append(";\n    border-radius: 10px;\n    border-left: 3px solid ");
  frame.before.append(colours.border).append(";\n    color: ").append(colours.text);
  frame.before.append(";\n    padding: 0.2em 0.2em 0.2em;\n    line-height: 1.2;\">\n    <p>");
  frame.after = "</p>\n</blockquote>";
  return frame;
}

markdown::MarkdownParser MarkdownHtmlHelper::makeParser(bool isDarkMode) {
  return makeParser([isDarkMode] { return isDarkMode; });
}

markdown::MarkdownParser MarkdownHtmlHelper::makeParser(std::function<bool()> isDarkMode) {
  return markdown::MarkdownParser(
      markdown::MarkdownParser::Options{.blockquoteFrame = [isDark = std::move(isDarkMode)] {
        return MarkdownHtmlHelper(isDark()).blockquoteFrame();
      }});
}

}  // namespace velkin
