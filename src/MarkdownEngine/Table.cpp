#include "MarkdownEngine/Table.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

#include <algorithm>

namespace markdown {
namespace {

/// A row without any cell is what a lone pipe at the end of the text makes; it is always the last one.
class Rows {
 public:
  Rows(const Table& table, const Content& content) noexcept : table_(table), content_(content) {}

  struct Row {
    std::size_t index;
    std::size_t firstCell;
    std::size_t cellCount;
  };
  [[nodiscard]] Row first() const noexcept { return rowAt(0, 0); }
  [[nodiscard]] Row after(const Row& row) const noexcept {
    return rowAt(row.index + 1, row.firstCell + row.cellCount);
  }

  /// Calls `use` with each row that is shown.
  template <typename Use>
  void forEachShown(Use use) const {
    Row row = first();
    while (row.index < table_.rowCount) {
      const bool isDelimiterRow = table_.hasHeader && row.index == 1;
      if (!isDelimiterRow) use(row);
      row = after(row);
    }
  }

  [[nodiscard]] ComponentRange cell(const Row& row, std::size_t column) const noexcept {
    const std::size_t index = row.firstCell + column;
    const bool isLast = index + 1 == content_.cells.size();
    return {content_.cells[index].first,
            isLast ? content_.components.size() : content_.cells[index + 1].first};
  }

 private:
  [[nodiscard]] Row rowAt(std::size_t index, std::size_t firstCell) const noexcept {
    const std::size_t count = content_.cells.size();
    std::size_t end = firstCell;
    while (end < count && (end == firstCell || !content_.cells[end].startsRow)) ++end;
    return {index, firstCell, end - firstCell};
  }

  const Table& table_;
  const Content& content_;
};

bool readDelimiter(Reader& reader) noexcept {
  if (!reader.read('|')) return false;
  reader.discardWhitespaces();
  return true;
}

/// Adds a row's cells to the content and returns their number; absent if the row isn't closed by a pipe.
std::optional<std::size_t> readRow(Reader& reader, Content& content) {
  std::size_t count = 0;
  if (!readDelimiter(reader)) return std::nullopt;
  while (!reader.didReachEnd()) {
    content.cells.push_back({content.components.size() & Content::maxPosition, count == 0});
    ++count;
    FormattedText::read(reader, content, Terminators::cell);
    if (!readDelimiter(reader)) return std::nullopt;
    if (reader.isAtNewline()) {
      reader.advanceIndex();
      break;
    }
  }
  return count;
}

std::optional<ColumnAlignment> alignmentFrom(std::string_view text) noexcept {
  constexpr ByteSet allowed{"-:"};
  const auto isAllowed = [&](char byte) { return allowed.contains(byte); };
  if (!std::all_of(text.begin(), text.end(), isAllowed)) return std::nullopt;
  const bool isLeft = !text.empty() && text.front() == ':';
  const bool isRight = !text.empty() && text.back() == ':';
  if (isLeft && isRight) return ColumnAlignment::center;
  if (isLeft) return ColumnAlignment::left;
  return isRight ? ColumnAlignment::right : ColumnAlignment::none;
}

void formHeader(Table& table, Content& content) {
  if (table.rowCount < 2) return;
  const Rows rows(table, content);
  const Rows::Row header = rows.first();
  const Rows::Row delimiters = rows.after(header);
  if (header.cellCount != delimiters.cellCount) return;
  std::string text;
  for (std::size_t column = 0; column < delimiters.cellCount; ++column) {
    text.clear();
    writePlainText(content, rows.cell(delimiters, column), text);
    const auto alignment = alignmentFrom(text);
    if (!alignment) {
      content.columnAlignments.clear();
      return;
    }
    content.columnAlignments.push_back(*alignment);
  }
  table.hasHeader = true;
}

class RowWriter {
 public:
  RowWriter(const Rows& rows, std::size_t columnCount, HtmlWriter& writer) noexcept
      : rows_(rows),
        columnCount_(columnCount),
        writer_(writer),
        alignments_(writer.context().content.columnAlignments) {}

  void write(const Rows::Row& row, std::string_view cellName) {
    constexpr std::size_t emptyCellSize = std::string_view("<td></td>").size();
    writer_.write("<tr>");
    for (std::size_t column = 0; column < columnCount_; ++column) {
      const bool isFilledUp = column >= row.cellCount;
      if (isFilledUp && !writer_.takeFromAllowance(emptyCellSize)) break;
      writer_.write('<');
      writer_.write(cellName);
      if (column < alignments_.size()) writer_.write(attribute(alignments_[column]));
      writer_.write('>');
      if (!isFilledUp) writer_.writeContent(rows_.cell(row, column));
      writer_.write("</");
      writer_.write(cellName);
      writer_.write('>');
    }
    writer_.write("</tr>");
  }

 private:
  const Rows& rows_;
  std::size_t columnCount_;
  HtmlWriter& writer_;
  const GrowingArray<ColumnAlignment>& alignments_;
};

}  // namespace

std::optional<Table> Table::read(Reader& reader, Content& content) {
  content.mayOverflow = false;
  Table table;
  while (reader.isAt('|')) {
    const auto cellCount = readRow(reader, content);
    if (!cellCount) return std::nullopt;
    table.columnCount = std::max(table.columnCount, *cellCount);
    ++table.rowCount;
  }
  if (table.rowCount == 0) return std::nullopt;
  formHeader(table, content);
  return table;
}

void Table::writeHtml(HtmlWriter& writer) const {
  const Rows rows(*this, writer.context().content);
  RowWriter rowWriter(rows, columnCount, writer);
  const std::size_t firstBodyRow = hasHeader ? 2 : 0;
  writer.write("<table>");
  rows.forEachShown([&](const Rows::Row& row) {
    const bool isHeader = row.index < firstBodyRow;
    if (isHeader) writer.write("<thead>");
    if (row.index == firstBodyRow) writer.write("<tbody>");
    rowWriter.write(row, isHeader ? "th" : "td");
    if (isHeader) writer.write("</thead>");
  });
  if (rowCount > firstBodyRow) writer.write("</tbody>");
  writer.write("</table>");
}

void Table::writePlainText(const Content& content, std::string& text) const {
  const Rows rows(*this, content);
  const std::size_t start = text.size();
  rows.forEachShown([&](const Rows::Row& row) {
    if (text.size() > start) text.push_back('\n');
    for (std::size_t column = 0; column < columnCount; ++column) {
      if (column > 0) text.append(" | ");
      if (column < row.cellCount) markdown::writePlainText(content, rows.cell(row, column), text);
    }
    text.append(" |");
  });
}

}  // namespace markdown
