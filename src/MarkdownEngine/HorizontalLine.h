#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// Three or more of "-" or "*" with nothing behind them on the line, not even a blank.
struct HorizontalLine {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::horizontalLines;

  [[nodiscard]] static std::optional<HorizontalLine> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& /*content*/, std::string& /*text*/) const noexcept {}
};

}  // namespace markdown
