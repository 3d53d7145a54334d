#include "MarkdownEngine/Table.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

#include <algorithm>

namespace markdown {
namespace {

bool readDelimiter(Reader& reader) noexcept {
  if (!reader.read('|')) return false;
  reader.discardWhitespaces();
  return true;
}

ComponentRange cellRange(const Content& content, std::size_t cell) noexcept {
  const bool isLast = cell + 1 == content.cells.size();
  return {content.cells[cell], isLast ? content.components.size() : content.cells[cell + 1]};
}

/// Adds a row to the content; false if it isn't closed by a pipe.
bool readRow(Reader& reader, Content& content) {
  const std::size_t firstCell = content.cells.size();
  if (!readDelimiter(reader)) return false;
  while (!reader.didReachEnd()) {
    content.cells.push_back(content.components.size());
    FormattedText::read(reader, content, Terminators::cell);
    if (!readDelimiter(reader)) return false;
    if (reader.isAtNewline()) {
      reader.advanceIndex();
      break;
    }
  }
  content.rowLengths.push_back(content.cells.size() - firstCell);
  return true;
}

std::optional<ColumnAlignment> alignmentFrom(std::string_view text) noexcept {
  constexpr ByteSet allowed{"-:"};
  if (!std::all_of(text.begin(), text.end(), [&](char byte) { return allowed.contains(byte); }))
    return std::nullopt;
  const bool isLeft = !text.empty() && text.front() == ':';
  const bool isRight = !text.empty() && text.back() == ':';
  if (isLeft && isRight) return ColumnAlignment::center;
  if (isLeft) return ColumnAlignment::left;
  return isRight ? ColumnAlignment::right : ColumnAlignment::none;
}

void formHeader(Table& table, Content& content) {
  if (table.rowCount < 2) return;
  const std::size_t length = content.rowLengths[0];
  if (length != content.rowLengths[1]) return;
  std::string text;
  for (std::size_t column = 0; column < length; ++column) {
    text.clear();
    writePlainText(content, cellRange(content, length + column), text);
    const auto alignment = alignmentFrom(text);
    if (!alignment) {
      content.columnAlignments.truncate(0);
      return;
    }
    content.columnAlignments.push_back(*alignment);
  }
  table.hasHeader = true;
}

/// Calls `use` with each row that is shown: its index in the table, its first cell's index, and its length.
template <typename Use>
void forEachRow(const Table& table, const Content& content, Use use) {
  std::size_t cell = 0;
  for (std::size_t row = 0; row < table.rowCount; ++row) {
    const std::size_t length = content.rowLengths[row];
    const bool isDelimiterRow = table.hasHeader && row == 1;
    if (!isDelimiterRow) use(row, cell, length);
    cell += length;
  }
}

class TableWriter {
 public:
  TableWriter(const Table& table, HtmlWriter& writer) noexcept
      : table_(table),
        writer_(writer),
        content_(writer.context().content),
        alignedColumns_(table.hasHeader ? content_.rowLengths[0] : 0) {}

  void writeRow(std::string_view cellName, std::size_t firstCell, std::size_t length) {
    writer_.write("<tr>");
    for (std::size_t column = 0; column < length; ++column) {
      startCell(cellName, column);
      writer_.writeContent(cellRange(content_, firstCell + column));
      endCell(cellName);
    }
    for (std::size_t column = length; column < table_.columnCount; ++column) {
      constexpr std::size_t emptyCellSize = std::string_view("<td></td>").size();
      if (!writer_.takeFromAllowance(emptyCellSize)) break;
      startCell(cellName, column);
      endCell(cellName);
    }
    writer_.write("</tr>");
  }

 private:
  void startCell(std::string_view name, std::size_t column) {
    writer_.write('<');
    writer_.write(name);
    if (column < alignedColumns_) {
      writer_.write(attribute(content_.columnAlignments[column]));
    }
    writer_.write('>');
  }
  void endCell(std::string_view name) {
    writer_.write("</");
    writer_.write(name);
    writer_.write('>');
  }

  const Table& table_;
  HtmlWriter& writer_;
  const Content& content_;
  std::size_t alignedColumns_;
};

}  // namespace

std::optional<Table> Table::read(Reader& reader, Content& content) {
  content.mayOverflow = false;
  Table table;
  while (reader.isAt('|')) {
    if (!readRow(reader, content)) return std::nullopt;
    table.columnCount = std::max(table.columnCount, content.rowLengths.back());
    ++table.rowCount;
  }
  if (table.rowCount == 0) return std::nullopt;
  formHeader(table, content);
  return table;
}

void Table::writeHtml(HtmlWriter& writer) const {
  TableWriter rows(*this, writer);
  const std::size_t firstBodyRow = hasHeader ? 2 : 0;
  writer.write("<table>");
  forEachRow(*this, writer.context().content, [&](std::size_t row, std::size_t first, std::size_t length) {
    const bool isHeader = row < firstBodyRow;
    if (isHeader) writer.write("<thead>");
    if (row == firstBodyRow) writer.write("<tbody>");
    rows.writeRow(isHeader ? "th" : "td", first, length);
    if (isHeader) writer.write("</thead>");
  });
  if (rowCount > firstBodyRow) writer.write("</tbody>");
  writer.write("</table>");
}

void Table::writePlainText(const Content& content, std::string& text) const {
  const std::size_t start = text.size();
  forEachRow(*this, content, [&](std::size_t, std::size_t first, std::size_t length) {
    if (text.size() > start) text.push_back('\n');
    for (std::size_t column = 0; column < columnCount; ++column) {
      if (column > 0) text.append(" | ");
      if (column < length) markdown::writePlainText(content, cellRange(content, first + column), text);
    }
    text.append(" |");
  });
}

}  // namespace markdown
