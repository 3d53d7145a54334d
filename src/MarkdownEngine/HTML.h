#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>
#include <string_view>

namespace markdown {

class HtmlWriter;

/// An HTML element of the input, from its "<" to behind its closing tag, as it stands. A root that is never
/// closed takes in the rest of the document.
struct HTML {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::html;

  std::string_view string;

  [[nodiscard]] static std::optional<HTML> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& /*content*/, std::string& /*text*/) const noexcept {}
};

}  // namespace markdown
