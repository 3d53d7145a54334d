#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// A list with the lists nested in it, which are lists alone: an item holds text and at most one nested list.
/// All of it stands in the components.
struct List {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::lists;

  ComponentRange components;

  [[nodiscard]] static std::optional<List> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace markdown
