#pragma once

#include "MarkdownEngine/BlockquoteFrame.h"
#include "MarkdownEngine/MarkdownParser.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velkin {

/// The page around the engine's fragment, with the program's style sheet and copy script, and the inline
/// style of blockquotes, both in a light and a dark colouring. A plain value; usable from any thread.
class MarkdownHtmlHelper {
 public:
  /// In the desktop's present colouring.
  MarkdownHtmlHelper();
  explicit MarkdownHtmlHelper(bool isDarkMode) noexcept : isDarkMode_(isDarkMode) {}

  /// The complete page. `markdown` is the fragment, which is HTML already.
  [[nodiscard]] std::string makeHTMLString(std::string_view markdown) const;
  /// The scripts of the page, to the letter: that of its script element and that of its event handlers. What
  /// else is one in a page came with the text.
  [[nodiscard]] static std::vector<std::string> pageScripts();
  /// The styled blockquote around its inner HTML.
  [[nodiscard]] std::string makeQuoteHTMLString(std::string_view body) const;
  /// What `makeQuoteHTMLString` puts around a body.
  [[nodiscard]] markdown::BlockquoteFrame blockquoteFrame() const;

  /// A parser whose blockquotes have the program's style, in the colouring that the desktop has at each
  /// conversion.
  [[nodiscard]] static markdown::MarkdownParser makeParser();
  /// The same in a fixed colouring.
  [[nodiscard]] static markdown::MarkdownParser makeParser(bool isDarkMode);
  /// The same with the appearance asked for at each conversion, on the thread that converts.
  [[nodiscard]] static markdown::MarkdownParser makeParser(std::function<bool()> isDarkMode);

 private:
  bool isDarkMode_;
};

}  // namespace velkin
