#include "Markdown/MarkdownFooterUIView.h"

#include "Components/MarkdownUIMenuButton.h"
#include "Components/MarkdownUIPopOver.h"
#include "Markdown/MarkdownLabeledUIPopOver.h"
#include "Markdown/MarkdownScratchpad.h"
#include "Markdown/MarkdownToolBar.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NSPasteboard.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace velkin {

using namespace platform;

namespace {

/// How long a bubble takes to close: the editor has the keyboard again when the text comes.
constexpr double closingDelay = 0.2;
constexpr int mostRows = 12;
constexpr int mostHeaderLevels = 6;
constexpr std::size_t longestTitle = 80;
constexpr double longestList = 320;
constexpr std::size_t usualCount = 8;

/// The start of a text, cut between characters.
std::string shortened(const std::string& text, std::size_t most) {
  if (text.size() <= most) return text;
  auto end = most;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "…";
}

/// The first line in which something stands.
std::string firstLine(const std::string& text) {
  const auto start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) return "(blank)";
  return shortened(text.substr(start, text.find_first_of("\r\n", start) - start), longestTitle);
}

std::string timeText(double seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  std::array<char, 64> text{};
  if (localtime_r(&time, &local) == nullptr) return {};
  const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &local);
  return {text.data(), length};
}

std::vector<std::string> numbers() {
  std::vector<std::string> texts;
  for (int i = 1; i <= mostRows; ++i) texts.push_back(std::to_string(i));
  return texts;
}

/// A picker counts positions, which start at 0.
Binding<int> position(const State<int>& number) {
  return {[number] { return number.get() - 1; }, [number](int chosen) { number.set(chosen + 1); }};
}

}  // namespace

void MarkdownFooterUIView::headerItemClicked(int level) const {
  shouldShowHeaderPopover.set(false);
  DispatchQueue::main().asyncAfter(closingDelay, [weak = std::weak_ptr(pad), level] {
    if (const auto present = weak.lock()) {
      present->editor().makeFirstResponder();
      present->modifierHelper().modifierHeaderClicked(level);
    }
  });
}

void MarkdownFooterUIView::tableDoneClicked() const {
  shouldShowTablePopover.set(false);
  DispatchQueue::main().asyncAfter(
      closingDelay, [weak = std::weak_ptr(pad), columns = selectedColumnNumber.get(),
                     rows = selectedRowNumber.get(), showHeader = isChecked.get()] {
        if (const auto present = weak.lock()) {
          present->editor().makeFirstResponder();
          present->modifierHelper().modifierTableClicked(columns, rows, showHeader);
        }
      });
}

void MarkdownFooterUIView::copyClicked() const {
  auto& pasteboard = NSPasteboard::generalPasteboard();
  pasteboard.clearContents();
  pasteboard.setString(markdown.get(), NSPasteboardTypeString);
}

Binding<bool> MarkdownFooterUIView::bubble(const State<bool>& isShown) const {
  return {[isShown] { return isShown.get(); },
          [isShown, weak = std::weak_ptr(pad)](bool isNowShown) {
            isShown.set(isNowShown);
            if (isNowShown) return;
            if (const auto present = weak.lock()) present->takeKeyboard();
          }};
}

View MarkdownFooterUIView::headerItems() const {
  Views items;
  for (int level = 1; level <= mostHeaderLevels; ++level) {
    items.push_back(MarkdownUIMenuButton{.title = "Heading " + std::to_string(level),
                                         .action = [self = *this, level] { self.headerItemClicked(level); }});
  }
  return VStack({.spacing = 2, .alignment = Alignment::fill}, std::move(items)).padding(2);
}

View MarkdownFooterUIView::tableCreator() const {
  const auto summary = "Create a " + std::to_string(selectedColumnNumber.get()) + "x" +
                       std::to_string(selectedRowNumber.get()) + " table " +
                       (isChecked.get() ? "with" : "without") + " a header.";
  return VStack({.spacing = 8, .alignment = Alignment::fill},
                {HStack({Text("Header: "), CheckBox("", isChecked.binding())
                                               .accessibilityLabel("Header: ")
                                               .help("Check to add header row.")})
                     .help("Check to add header row."),
                 Picker("Rows      ", numbers(), position(selectedRowNumber)),
                 Picker("Columns", numbers(), position(selectedColumnNumber)),
                 Button("Done", [self = *this] { self.tableDoneClicked(); }), Text(summary)});
}

View MarkdownFooterUIView::earlierTextsList() const {
  Views rows;
  for (const auto& entry : earlierTexts.get()) {
    rows.push_back(MarkdownUIMenuLabelButton{
        .title = timeText(entry.time) + "  " + firstLine(entry.text),
        .toolTip = firstLine(entry.text),
        .action = [text = markdown, isShown = bubble(shouldShowEarlierTexts), chosen = entry.text] {
          text.set(chosen);
          isShown.set(false);
        }});
  }
  if (rows.empty()) return Text("No earlier texts.").padding(8);
  const bool isLong = rows.size() > usualCount;
  const auto list = VStack({.spacing = 2, .alignment = Alignment::fill}, std::move(rows)).padding(2);
  return isLong ? ScrollView(list).frame({.height = longestList}) : list;
}

Views MarkdownFooterUIView::deleteButton() const {
  return {markdownTool("trash", "Delete", iconSize, [markdown = markdown] { markdown.set(""); })};
}

Views MarkdownFooterUIView::specialButtons() const {
  using Helper = MarkdownModifierHelper;
  const auto insert = [pad = pad](void (Helper::*operation)(ModifierType), ModifierType type) {
    return [pad, operation, type] { (pad->modifierHelper().*operation)(type); };
  };
  return {MarkdownUIPopOver{.imageName = "h.square",
                            .title = "Header",
                            .buttons = [self = *this] { return self.headerItems(); },
                            .iconSize = iconSize,
                            .showPopOver = bubble(shouldShowHeaderPopover)},
          MarkdownLabeledUIPopOver{.imageName = "tablecells",
                                   .title = "Table",
                                   .buttons = [self = *this] { return self.tableCreator(); },
                                   .showPopOver = bubble(shouldShowTablePopover),
                                   .iconSize = iconSize},
          markdownTool("text.quote", "Block Quote", iconSize,
                       insert(&Helper::modifierQuoteBlockClicked, ModifierType::quoteBlock)),
          markdownTool("ellipsis.curlybraces", "Inline Code", iconSize,
                       insert(&Helper::modifierClicked, ModifierType::codeInline)),
          markdownTool("text.aligncenter", "Code Block", iconSize,
                       insert(&Helper::modifierCodeBlockClicked, ModifierType::codeBlock)),
          markdownTool("line.diagonal", "Divider", iconSize,
                       insert(&Helper::modifierDividerClicked, ModifierType::divider)),
          markdownTool("link", "Link", iconSize, insert(&Helper::modifierLinkClicked, ModifierType::link)),
          markdownTool("photo", "Image", iconSize,
                       insert(&Helper::modifierLinkClicked, ModifierType::photo))};
}

Views MarkdownFooterUIView::copyButton() const {
  return {markdownTool("doc.on.doc", "Copy", iconSize, [self = *this] { self.copyClicked(); }),
          MarkdownUIPopOver{.imageName = "clock.arrow.circlepath",
                            .title = "Earlier Texts",
                            .buttons = [self = *this] { return self.earlierTextsList(); },
                            .iconSize = iconSize,
                            .action = [pad = pad,
                                       texts = earlierTexts] { texts.set(pad->earlierTexts()); },
                            .showPopOver = bubble(shouldShowEarlierTexts)}};
}

View MarkdownFooterUIView::body() const {
  return markdownToolBar("Insert", {deleteButton(), specialButtons(), copyButton()});
}

}  // namespace velkin
