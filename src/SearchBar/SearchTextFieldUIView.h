#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// The one line for the prompt, or for the key as long as there is none.
struct SearchTextFieldUIView {
  double iconSize = 32;
  double fontSize = platform::preferredPointSize(platform::Font::title);
  double smallFont = platform::preferredPointSize(platform::Font::title) * 0.84;
  std::string keyMissingString = "Api Key Missing";
  std::string typePromptString = "Type Your Prompt";
  platform::Binding<bool> isMissingApiKey;
  platform::Binding<std::string> text;
  platform::Binding<bool> isDisabled;
  platform::Action onCommit;
  std::function<void(const std::string&)> onChange;
  /// More was typed or pasted than the field holds.
  platform::Action onCut;
  /// The field has the keyboard, or is to get it.
  platform::State<bool> isFocused{true};

  platform::View body() const;
};

}  // namespace velkin
