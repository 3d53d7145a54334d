#include "SearchBar/SearchBarRecentsUIView.h"

#include "Components/MarkdownUIMenuButton.h"
#include "Components/MarkdownUIPopOver.h"

#include <algorithm>

namespace velkin {

using namespace platform;

namespace {

constexpr double iconSize = 16;
/// A list with more entries, which only an outside hand can have made, scrolls.
constexpr std::size_t usualCount = 10;
constexpr double longestList = 320;
/// A tooltip is for a look, not for reading a book.
constexpr std::size_t longestToolTip = 600;

/// The start of a text, cut between characters.
std::string shortened(const std::string& text) {
  if (text.size() <= longestToolTip) return text;
  auto end = longestToolTip;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) --end;
  return text.substr(0, end) + "…";
}

/// A row has one line.
std::string inOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  return text;
}

}  // namespace

std::vector<std::string> SearchBarRecentsUIView::searchesText() const {
  std::vector<std::string> texts;
  for (const auto& search : searches.get()) texts.push_back(search.searchPrompt);
  return texts;
}

void SearchBarRecentsUIView::rowClicked(const std::string& text) const {
  const auto texts = searchesText();
  const auto found = std::find(texts.begin(), texts.end(), text);
  const auto all = searches.get();
  const auto index = static_cast<std::size_t>(found - texts.begin());
  if (index < all.size()) action(all[index]);
  shouldShowPopover.set(false);
}

View SearchBarRecentsUIView::menu() const {
  Views rows;
  for (const auto& text : searchesText()) {
    rows.push_back(MarkdownUIMenuLabelButton{.title = inOneLine(shortened(text)),
                                             .toolTip = shortened(text),
                                             .action = [self = *this, text] { self.rowClicked(text); }});
  }
  const bool isLong = rows.size() > usualCount;
  const auto list = VStack({.spacing = 2, .alignment = Alignment::fill}, std::move(rows));
  return VStack({.spacing = 2, .alignment = Alignment::fill},
                {isLong ? ScrollView(list).frame({.height = longestList}) : list,
                 Divider().padding(EdgeInsets::vertical(6)),
                 MarkdownUIMenuButton{.title = "Clear Recents",
                                      .action =
                                          [clear = clearAction, isShown = shouldShowPopover] {
                                            if (clear) clear();
                                            isShown.set(false);
                                          }},
                 Text("Hover over buttons for details.")
                     .font(Font::caption2)
                     .opacity(0.5)
                     .padding(EdgeInsets{.top = 4, .leading = 10, .bottom = 4, .trailing = 10})})
      .padding(2);
}

View SearchBarRecentsUIView::body() const {
  return MarkdownUIPopOver{.imageName = "chevron.down",
                           .title = "Recent Searches",
                           .buttons = [self = *this] { return self.menu(); },
                           .iconSize = iconSize,
                           .showPopOver = shouldShowPopover.binding(),
                           .isDisabled = searches.get().empty()};
}

}  // namespace velkin
