#pragma once

#include "MarkdownEngine/HtmlElements.h"
#include "MarkdownEngine/LineSearch.h"

#include <string_view>

namespace markdown {

/// The searches that decide whether an inline element stands at a position. Each is a question about the text
/// alone, whatever is being read around the position.
struct InlineSearches {
  explicit InlineSearches(std::string_view text)
      : html(text),
        parentheses(text),
        backticks(text, '`', LineSearch::End::newline),
        brackets(text, ']', LineSearch::End::newline),
        semicolons(text, ';', LineSearch::End::whitespace) {}

  HtmlElements html;
  ParenthesisSearch parentheses;
  LineSearch backticks;
  LineSearch brackets;
  LineSearch semicolons;
};

}  // namespace markdown
