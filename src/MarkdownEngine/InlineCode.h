#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string_view>

namespace markdown {

/// Code between two single backticks in one line. Nothing in it is markup; it is escaped when it is written.
struct InlineCode {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::inlineCode;

  std::string_view code;

  [[nodiscard]] static std::optional<InlineCode> read(Reader& reader, Content& content);
};

}  // namespace markdown
