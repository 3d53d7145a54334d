#pragma once

#include <string_view>

namespace velkin {

/// What the tool bars put around a text, or into it.
enum class ModifierType { bold, codeBlock, codeInline, divider, italics, link, photo, quoteBlock, strikethrough };

constexpr std::string_view modifierString(ModifierType type) noexcept {
  switch (type) {
    case ModifierType::bold:
      return "**";
    case ModifierType::codeBlock:
      return "```";
    case ModifierType::codeInline:
      return "`";
    case ModifierType::divider:
      return "---";
    case ModifierType::italics:
      return "*";
    case ModifierType::link:
      return "[]()";
    case ModifierType::photo:
      return "![]()";
    case ModifierType::quoteBlock:
      return ">";
    case ModifierType::strikethrough:
      break;
  }
  return "~~";
}

/// What the cells of a generated table hold.
enum class ModifierTableRowType { column, dash, header, row };

constexpr std::string_view fillString(ModifierTableRowType type) noexcept {
  switch (type) {
    case ModifierTableRowType::column:
      return "Cell";
    case ModifierTableRowType::dash:
      return "------";
    case ModifierTableRowType::header:
      return "Header";
    case ModifierTableRowType::row:
      break;
  }
  return "Row";
}

}  // namespace velkin
