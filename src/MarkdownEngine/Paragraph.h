#pragma once

#include "MarkdownEngine/FormattedText.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// Text that is nothing else.
struct Paragraph {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::paragraphs;

  FormattedText text;

  /// Never fails.
  [[nodiscard]] static std::optional<Paragraph> read(Reader& reader, Content& content);
  /// Reads what every other element has refused. Text ends in front of "<p", where no paragraph may begin;
  /// refused there too, the "<" is text, so that the position always moves.
  [[nodiscard]] static Paragraph readFallback(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace markdown
