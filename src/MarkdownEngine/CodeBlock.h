#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>
#include <string_view>

namespace markdown {

class HtmlWriter;

/// Code between two fences of equally many backticks, three at least. The closing one stands at the start of
/// a line that is not the first of the code; without it the code runs to the end of the document.
struct CodeBlock {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::codeBlocks;

  /// What stands behind the opening fence. It is kept and written nowhere.
  std::string_view language;
  /// As it stands in the input; it is escaped when it is written.
  std::string_view code;

  [[nodiscard]] static std::optional<CodeBlock> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace markdown
