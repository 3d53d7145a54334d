#pragma once

#include "MarkdownEngine/BlockquoteFrame.h"
#include "MarkdownEngine/Markdown.h"
#include "MarkdownEngine/ModifierCollection.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace markdown {

/// Markdown to HTML: the one entry to the engine. Every text yields some HTML; nothing fails. Parsing doesn't
/// change the parser, so one may be kept, used again, and used by several threads at once.
///
/// Text that isn't valid UTF-8 is read with U+FFFD in the place of each bad sequence.
class MarkdownParser {
 public:
  struct Options {
    std::vector<Modifier> modifiers = {};
    /// Asked for once in every conversion; plain tags without it.
    std::function<BlockquoteFrame()> blockquoteFrame = {};
  };

  MarkdownParser() = default;
  explicit MarkdownParser(std::vector<Modifier> modifiers) : modifiers_(std::move(modifiers)) {}
  explicit MarkdownParser(Options options)
      : modifiers_(std::move(options.modifiers)), blockquoteFrame_(std::move(options.blockquoteFrame)) {}

  void addModifier(Modifier modifier) { modifiers_.insert(std::move(modifier)); }

  [[nodiscard]] Markdown parse(std::string_view markdown) const;
  /// The HTML of all blocks with nothing between them; the empty string for a text of white space.
  [[nodiscard]] std::string html(std::string_view markdown) const;

 private:
  [[nodiscard]] BlockquoteFrame blockquoteFrame() const {
    return blockquoteFrame_ ? blockquoteFrame_() : BlockquoteFrame();
  }

  ModifierCollection modifiers_;
  std::function<BlockquoteFrame()> blockquoteFrame_;
};

}  // namespace markdown
