#pragma once

#include "Markdown/ScratchpadJournal.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <memory>
#include <string>
#include <vector>

namespace velkin {

class MarkdownScratchpad;

/// The tool bar below the editor: what is put into the text, and what is done with all of it.
struct MarkdownFooterUIView {
  std::shared_ptr<MarkdownScratchpad> pad;
  platform::Binding<bool> isShowingPreviewVertically;
  platform::Binding<bool> isShowingPreviewHorizontally;
  platform::Binding<std::string> markdown;
  platform::Binding<double> fontSize = platform::Binding<double>::constant(12);
  platform::Binding<double> webViewZoom = platform::Binding<double>::constant(1);
  /// The table gets a header row.
  platform::State<bool> isChecked{true};
  platform::State<int> selectedRowNumber{1};
  platform::State<int> selectedColumnNumber{1};
  platform::State<bool> shouldShowTablePopover{false};
  platform::State<bool> shouldShowHeaderPopover{false};
  platform::State<bool> shouldShowEarlierTexts{false};
  platform::State<std::vector<ScratchpadJournal::Entry>> earlierTexts;
  double iconSize = 12;

  platform::View body() const;

  /// `level`: 1 to 6.
  void headerItemClicked(int level) const;
  void tableDoneClicked() const;
  void copyClicked() const;

 private:
  platform::Views deleteButton() const;
  platform::Views specialButtons() const;
  platform::Views copyButton() const;
  platform::View headerItems() const;
  platform::View tableCreator() const;
  platform::View earlierTextsList() const;
  /// A bubble's flag: the editor gets the keyboard back when the bubble closes.
  platform::Binding<bool> bubble(const platform::State<bool>& isShown) const;
};

}  // namespace velkin
