#pragma once

#include "MarkdownEngine/FormattedText.h"

#include <cstddef>
#include <optional>
#include <string>

namespace markdown {

class HtmlWriter;

/// A table of lines that begin and end with a pipe. If the second row holds delimiters only, the first one is
/// the header and the delimiters align the columns. Its cells and alignments are the content's.
///
/// How many cells a row is filled up to is only known behind the last row. A large table is read twice, so
/// that it needn't be kept: once to know that, and once to write it.
struct Table {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::tables;

  /// The header is the first row; the delimiters' is the second and isn't shown.
  bool hasHeader = false;
  /// The largest number of cells in any row, the delimiters' included.
  std::size_t columnCount = 0;
  std::size_t rowCount = 0;

  [[nodiscard]] static std::optional<Table> read(Reader& reader, Content& content);
  /// Writes nothing more of a large table, which was written when it was read.
  void writeHtml(HtmlWriter& writer) const;
  void writePlainText(const Content& content, std::string& text) const;
};

}  // namespace markdown
