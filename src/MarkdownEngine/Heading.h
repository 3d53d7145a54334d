#pragma once

#include "MarkdownEngine/FormattedText.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// One to six "#", a blank, and text up to the line feed.
struct Heading {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::headings;

  int level = 1;
  FormattedText text;

  [[nodiscard]] static std::optional<Heading> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

/// The length that remains of a finished heading's text, HTML or plain, when the "#" at its end are dropped
/// together with the one character before them, whatever it is. A lone "#" stays.
[[nodiscard]] std::size_t lengthWithoutTrailingMarkers(std::string_view text) noexcept;

}  // namespace markdown
