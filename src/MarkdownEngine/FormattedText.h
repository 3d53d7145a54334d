#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

namespace markdown {

/// The text of a paragraph, a heading, a quoted line, a list item or a table cell: a flat stretch of
/// components. Emphasis isn't nested in a tree; each marker is a tag of its own.
struct FormattedText {
  ComponentRange components;

  /// Reads up to a terminator that isn't behind a backslash, or to where a new block begins. Never fails; the
  /// terminator isn't consumed. Pieces that hold nothing aren't kept.
  static FormattedText read(Reader& reader, Content& content, Terminators terminators = Terminators::none);
  /// Reads up to the line feed and consumes the one character at which the text ended.
  static FormattedText readLine(Reader& reader, Content& content);
};

}  // namespace markdown
