#pragma once

#include "Platform/NSTextView.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// The editor of a scratchpad.
struct MarkdownTextUIView {
  /// Outlives the view.
  platform::NSTextView* textView = nullptr;
  platform::Binding<double> fontSize;
  platform::Binding<bool> isFind;
  platform::Binding<bool> isPrevNextButtonDisabled;
  platform::Binding<bool> isNotFoundTextHidden;
  platform::Binding<std::string> markdown;
  platform::Binding<bool> isShowingPreviewVertically;
  platform::Binding<bool> isShowingPreviewHorizontally;
  platform::Action onCommit = {};
  /// Told of each change of the text.
  std::function<void(const std::string&)> onChange;
  double smallFont = platform::preferredPointSize(platform::Font::body) * 0.84;

  /// Has the editor tell of its changes.
  void follow() const;
  /// Returns the find state to rest when the text is empty.
  void textChanged(const std::string& text) const;

  platform::View body() const;
};

}  // namespace velkin
