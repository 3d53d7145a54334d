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

/// Reads a row, calls `use` with the start of each cell's content when it is read, and returns their number;
/// absent if the row isn't closed by a pipe.
template <typename Use>
std::optional<std::size_t> readRow(Reader& reader, Content& content, Use use) {
  std::size_t count = 0;
  if (!readDelimiter(reader)) return std::nullopt;
  while (!reader.didReachEnd()) {
    const std::size_t first = content.components.size();
    FormattedText::read(reader, content, Terminators::cell);
    if (!readDelimiter(reader)) return std::nullopt;
    use(first, count++);
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

class RowWriter {
 public:
  RowWriter(const Table& table, HtmlWriter& writer) noexcept
      : table_(table), writer_(writer), alignments_(writer.context().content.columnAlignments) {}

  void startTable() { writer_.write("<table>"); }
  void startRow(std::size_t index) {
    isHeader_ = index < firstBodyRow();
    if (isHeader_) writer_.write("<thead>");
    if (index == firstBodyRow()) writer_.write("<tbody>");
    writer_.write("<tr>");
    column_ = 0;
  }
  void writeCell(const ComponentRange& content) {
    startCell();
    writer_.writeContent(content);
    endCell();
  }
  void endRow() {
    constexpr std::size_t emptyCellSize = std::string_view("<td></td>").size();
    while (column_ < table_.columnCount && writer_.takeFromAllowance(emptyCellSize)) {
      startCell();
      endCell();
    }
    writer_.write("</tr>");
    if (isHeader_) writer_.write("</thead>");
  }
  void endTable() {
    if (table_.rowCount > firstBodyRow()) writer_.write("</tbody>");
    writer_.write("</table>");
  }

 private:
  [[nodiscard]] std::size_t firstBodyRow() const noexcept { return table_.hasHeader ? 2 : 0; }
  [[nodiscard]] std::string_view cellName() const noexcept { return isHeader_ ? "th" : "td"; }
  void startCell() {
    writer_.write('<');
    writer_.write(cellName());
    if (table_.hasHeader && column_ < alignments_.size()) writer_.write(attribute(alignments_[column_]));
    writer_.write('>');
    ++column_;
  }
  void endCell() {
    writer_.write("</");
    writer_.write(cellName());
    writer_.write('>');
  }

  const Table& table_;
  HtmlWriter& writer_;
  const GrowingArray<ColumnAlignment>& alignments_;
  bool isHeader_ = false;
  std::size_t column_ = 0;
};

class TableReader {
 public:
  TableReader(Reader& reader, Content& content) noexcept
      : reader_(reader), start_(reader), content_(content) {}

  std::optional<Table> read() {
    while (reader_.isAt('|')) {
      const auto cellCount = readRow(
          reader_, content_, [this](std::size_t first, std::size_t column) { addCell(first, column); });
      if (!cellCount) return std::nullopt;
      if (table_.rowCount == 0) headerLength_ = *cellCount;
      if (table_.rowCount == 1) table_.hasHeader = hasDelimitersOnly_ && *cellCount == headerLength_;
      table_.columnCount = std::max(table_.columnCount, *cellCount);
      ++table_.rowCount;
    }
    if (table_.rowCount == 0) return std::nullopt;
    if (isLarge_) writeLarge();
    return table_;
  }

 private:
  void addCell(std::size_t first, std::size_t column) {
    content_.cells.push_back({first & Content::maxPosition, column == 0});
    if (table_.rowCount == 1 && hasDelimitersOnly_) {
      std::string text;
      writePlainText(content_, {first, content_.components.size()}, text);
      const auto alignment = alignmentFrom(text);
      hasDelimitersOnly_ = alignment.has_value();
      if (alignment) content_.columnAlignments.push_back(*alignment);
    }
    isLarge_ = isLarge_ || content_.isLarge();
    if (isLarge_) dropCells();
  }

  void dropCells() {
    content_.components.clear();
    content_.links.clear();
    content_.cells.clear();
  }

  void writeLarge() {
    dropCells();
    content_.isOverflowing = true;
    RowWriter writer(table_, *content_.overflowWriter);
    Reader again = start_;
    writer.startTable();
    for (std::size_t row = 0; row < table_.rowCount; ++row) {
      const bool isShown = !table_.hasHeader || row != 1;
      if (isShown) writer.startRow(row);
      static_cast<void>(readRow(again, content_, [&](std::size_t, std::size_t) {
        if (isShown) writer.writeCell(content_.whole());
        dropCells();
      }));
      if (isShown) writer.endRow();
    }
    writer.endTable();
  }

  Reader& reader_;
  Reader start_;
  Content& content_;
  Table table_;
  std::size_t headerLength_ = 0;
  bool hasDelimitersOnly_ = true;
  bool isLarge_ = false;
};

}  // namespace

std::optional<Table> Table::read(Reader& reader, Content& content) {
  content.mayOverflow = false;
  return TableReader(reader, content).read();
}

void Table::writeHtml(HtmlWriter& writer) const {
  const Content& content = writer.context().content;
  if (content.isOverflowing) return;
  const Rows rows(*this, content);
  RowWriter rowWriter(*this, writer);
  rowWriter.startTable();
  rows.forEachShown([&](const Rows::Row& row) {
    rowWriter.startRow(row.index);
    for (std::size_t column = 0; column < row.cellCount; ++column)
      rowWriter.writeCell(rows.cell(row, column));
    rowWriter.endRow();
  });
  rowWriter.endTable();
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
