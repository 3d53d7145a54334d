#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <concepts>
#include <optional>

namespace markdown {

/// An element that builds itself from a reader, or fails. What holds formatted text adds it to the content. A
/// failed `read` may leave the reader and the content anywhere; `readOrRewind` puts both back.
template <typename Element>
concept Readable = requires(Reader& reader, Content& content) {
  { Element::read(reader, content) } -> std::same_as<std::optional<Element>>;
};

/// Reads the element, unless a backslash stands right before it: that one check makes a backslash escape
/// every element.
template <Readable Element>
[[nodiscard]] std::optional<Element> readOrRewind(Reader& reader, Content& content) {
  if (reader.isBehindBackslash()) return std::nullopt;
  const Reader saved = reader;
  const Content::Sizes sizes = content.sizes();
  std::optional<Element> element = Element::read(reader, content);
  if (!element) {
    reader = saved;
    content.goBackTo(sizes);
  }
  return element;
}

}  // namespace markdown
