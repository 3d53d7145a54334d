#include "Markdown/MarkdownModifierHelper.h"

#include "Platform/FatalError.h"
#include "Platform/NSPasteboard.h"

#include <string_view>
#include <utility>

namespace velkin {

using platform::NSPasteboard;
using platform::NSPasteboardReading;
using platform::NSTextView;

namespace {

/// The part of a well-formed text that is selected.
std::string partOf(const std::string& text, platform::NSRange range) {
  const auto offset = [&](std::size_t from, std::size_t characters) {
    for (; characters > 0 && from < text.size(); --characters) {
      do {
        ++from;
      } while (from < text.size() && (static_cast<unsigned char>(text[from]) & 0xC0U) == 0x80U);
    }
    return from;
  };
  const auto start = offset(0, range.location);
  return text.substr(start, offset(start, range.length) - start);
}

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const auto part : parts) text.append(part);
  return text;
}

void requireCount(int count) {
  if (count < 1) platform::fatalError("Can't form Range with upperBound < lowerBound");
}

}  // namespace

void MarkdownModifierHelper::perform(Operation operation) {
  if (isReading_) {
    waiting_.push_back(std::move(operation));
  } else {
    start(operation);
  }
}

void MarkdownModifierHelper::start(const Operation& operation) {
  const auto range = textView_.selectedRange();
  if (operation.ignoresSelection) return insert(operation.insertion(std::nullopt));
  if (range.length > 0) return insert(operation.insertion(partOf(textView_.string(), range)));
  isReading_ = true;
  heldKeys_ = textView_.holdKeys();
  NSPasteboard::generalPasteboard().readItems(
      [this, operation, alive = isAlive_.watch()](const NSPasteboardReading& reading) {
        if (!alive) return;
        if (reading.failure == NSPasteboardReading::Failure::tooLong) {
          const auto refused = textView_.didRefuse;
          if (refused) refused(NSTextView::Refusal::tooLong);
        } else {
          insert(operation.insertion(reading.string()));
        }
        readingIsOver();
      });
}

void MarkdownModifierHelper::readingIsOver() {
  isReading_ = false;
  while (!isReading_ && !waiting_.empty()) {
    const auto next = std::move(waiting_.front());
    waiting_.pop_front();
    start(next);
  }
  if (!isReading_) heldKeys_.reset();
}

void MarkdownModifierHelper::insert(const Insertion& insertion) {
  if (!textView_.insertText(insertion.text, textView_.selectedRange())) return;
  if (insertion.cursorLeft > 0) {
    const auto end = textView_.selectedRange().location;
    textView_.setSelectedRange({end - insertion.cursorLeft, 0});
  }
  NSPasteboard::generalPasteboard().clearContents();
}

void MarkdownModifierHelper::modifierClicked(ModifierType type) {
  perform({[marker = modifierString(type)](const Selection& selection) -> Insertion {
    if (selection) return {joined({marker, *selection, marker})};
    return {joined({marker, marker}), marker.size()};
  }});
}

void MarkdownModifierHelper::modifierCodeBlockClicked(ModifierType type) {
  perform({[fence = modifierString(type)](const Selection& selection) -> Insertion {
    if (selection) return {joined({"\n\n", fence, "\n", *selection, "\n", fence})};
    // Over the closing fence and the line feed before it.
    return {joined({fence, "\n\n", fence}), fence.size() + 1};
  }});
}

void MarkdownModifierHelper::modifierQuoteBlockClicked(ModifierType type) {
  perform({[marker = modifierString(type)](const Selection& selection) -> Insertion {
    return {joined({"\n ", marker, " ", selection.value_or("")})};
  }});
}

void MarkdownModifierHelper::modifierDividerClicked(ModifierType type) {
  perform({[marker = modifierString(type)](const Selection&) -> Insertion {
             return {joined({"\n", marker, "\n"})};
           },
           true});
}

void MarkdownModifierHelper::modifierHeaderClicked(int level) {
  requireCount(level);
  perform(
      {[marks = std::string(static_cast<std::size_t>(level), '#')](const Selection& selection) -> Insertion {
        if (selection) return {joined({"[\n\n", marks, " ", *selection, "]"})};
        return {marks + " "};
      }});
}

void MarkdownModifierHelper::wrapAsLink(ModifierType type, std::string_view opening) {
  perform({[opening, empty = modifierString(type)](const Selection& selection) -> Insertion {
    // Into the parentheses, or into the brackets.
    if (selection) return {joined({opening, *selection, "]()"}), 1};
    return {std::string(empty), 3};
  }});
}

void MarkdownModifierHelper::modifierLinkClicked(ModifierType type) { wrapAsLink(type, "["); }
void MarkdownModifierHelper::modifierPhotoClicked(ModifierType type) { wrapAsLink(type, "!["); }

void MarkdownModifierHelper::modifierTableClicked(int columns, int rows, bool showHeader) {
  requireCount(columns);
  requireCount(rows);
  std::string table;
  if (showHeader) {
    table += getTableHeaderRow(ModifierTableRowType::header, columns);
    table += getTableDashRow(ModifierTableRowType::dash, columns);
  }
  for (int row = 1; row <= rows; ++row) table += getTableRow(ModifierTableRowType::row, columns, row);
  perform({[table](const Selection&) -> Insertion { return {table}; }, true});
}

std::string MarkdownModifierHelper::getTableHeaderRow(ModifierTableRowType type, int columnCount) {
  std::string row = "|";
  for (int column = 1; column <= columnCount; ++column) {
    row += joined({" ", fillString(type), std::to_string(column), " |"});
  }
  return row + "\n";
}

std::string MarkdownModifierHelper::getTableDashRow(ModifierTableRowType type, int columnCount) {
  std::string row = "|";
  for (int column = 1; column <= columnCount; ++column) row += joined({" ", fillString(type), " |"});
  return row + "\n";
}

std::string MarkdownModifierHelper::getTableRow(ModifierTableRowType type, int columnCount, int rowNumber) {
  std::string row = joined({"| ", fillString(type), std::to_string(rowNumber), " |"});
  for (int column = 2; column <= columnCount; ++column) {
    row += joined({" ", fillString(ModifierTableRowType::column), std::to_string(column - 1), " |"});
  }
  return row + "\n";
}

}  // namespace velkin
