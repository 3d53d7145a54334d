#pragma once

#include "MarkdownEngine/BlockquoteFrame.h"
#include "MarkdownEngine/ModifierCollection.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace markdown::reference {

struct ReferenceMarkdown {
  std::string html;
  std::map<std::string, std::string> metadata;
  std::optional<std::string> title;
};

/// The dialect as it is told, step by step, with no thought of speed: every attempt is made again wherever it
/// is due, every element is an object of its own and failures are exceptions. The engine's output is compared
/// with this one's. The text must be valid UTF-8.
ReferenceMarkdown parse(std::string_view markdown, const BlockquoteFrame& frame,
                        const ModifierCollection& modifiers);

}  // namespace markdown::reference
