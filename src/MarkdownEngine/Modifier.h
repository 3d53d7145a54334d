#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace markdown {

/// Replaces the HTML of every element of one kind.
struct Modifier {
  enum class Target {
    metadataKeys,
    metadataValues,
    blockquotes,
    codeBlocks,
    headings,
    horizontalLines,
    html,
    images,
    inlineCode,
    links,
    lists,
    paragraphs,
    tables,
  };
  static constexpr std::size_t targetCount = 13;

  Target target;
  /// Gets the HTML so far and the Markdown from which the element was read; returns the HTML to use instead.
  /// For metadata both are the key or the value.
  std::function<std::string(const std::string& html, std::string_view markdown)> closure;
};

}  // namespace markdown
