#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// An icon button of the tool bars: its title is its tooltip. Hovering lights it up.
struct MarkdownUIButton {
  std::string imageName;
  std::string title;
  bool useFixedWidth = false;
  double iconSize = 12;
  platform::Action action;
  /// For the tools of a text: a click leaves the keyboard to it.
  bool leavesKeyboard = false;

  platform::View body() const;
};

}  // namespace velkin
