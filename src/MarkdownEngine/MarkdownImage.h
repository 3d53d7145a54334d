#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

namespace MarkdownImage {

/// An image that begins a block, and so stands outside any paragraph. The same components hold it inside a
/// text.
struct Image {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::images;

  ComponentRange components;

  [[nodiscard]] static std::optional<Image> read(Reader& reader, Content& content);
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace MarkdownImage
}  // namespace markdown
