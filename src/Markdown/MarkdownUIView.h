#pragma once

#include "MarkdownEngine/MarkdownParser.h"
#include "Markdown/MarkdownScratchpad.h"
#include "Platform/NSTextView.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/SharedState.h"

#include <functional>
#include <memory>
#include <string>

namespace velkin {

/// The scratchpad: an editor for Markdown, its live preview beside or below it, and two tool bars. Its text
/// lives as long as the view; a new view starts with the sample, and offers what was written before.
struct MarkdownUIView {
  platform::State<double> fontSize{platform::preferredPointSize(platform::Font::body)};
  platform::State<double> webZoom{0.75};
  platform::ObservedObject<SharedState> sharedState;
  platform::Action onCommit = {};
  std::function<void(const std::string&)> onChange = {};
  platform::State<std::shared_ptr<const markdown::MarkdownParser>> parser{makeParser()};
  platform::State<bool> isFind{false};
  platform::State<bool> isPrevNextButtonDisabled{true};
  platform::State<bool> isNotFoundTextHidden{true};
  /// The preview stands to the right of the editor.
  platform::State<bool> isShowingPreviewVertically{true};
  /// The preview stands below the editor.
  platform::State<bool> isShowingPreviewHorizontally{false};
  platform::State<std::string> markdown{};
  /// The fragment made from the text.
  platform::State<std::string> html{};
  /// The journal holds the text of the scratchpad before this one.
  platform::State<bool> canBringBack{false};
  /// What the user is told of what went wrong; empty for nothing.
  platform::State<std::string> notice{};
  std::shared_ptr<MarkdownScratchpad> pad = std::make_shared<MarkdownScratchpad>();

  /// The editor's text is another one.
  void textChanged(const std::string& newValue) const;
  void bringBackClicked() const;

  platform::View body() const;

 private:
  static std::shared_ptr<const markdown::MarkdownParser> makeParser();
  /// Writing goes to the editor, as a step of undo, and comes back as a change.
  platform::Binding<std::string> text() const;
  void appeared() const;
  void refused(platform::NSTextView::Refusal reason) const;
  platform::View editor() const;
  platform::View bars() const;
  platform::View panes() const;
};

}  // namespace velkin
