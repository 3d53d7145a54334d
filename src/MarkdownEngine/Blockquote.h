#pragma once

#include "MarkdownEngine/FormattedText.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// Lines from a "> " on to the first empty one. Each line is a text of its own, so that no style runs over a
/// line end; they are joined with nothing between them. A quote holds no blocks.
struct Blockquote {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::blockquotes;

  FormattedText text;

  [[nodiscard]] static std::optional<Blockquote> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace markdown
