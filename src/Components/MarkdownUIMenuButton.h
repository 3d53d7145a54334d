#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// A row of a bubble's menu, lit up under the pointer.
struct MarkdownUIMenuButton {
  std::string title;
  std::string toolTip = {};
  bool shouldCenterTitle = false;
  platform::Action action;
  bool isDisabled = false;
  platform::State<bool> isHovering{false};

  platform::View body() const;
};

/// A row whose title is a text of the user's: cut at one line, and whole in the tooltip.
struct MarkdownUIMenuLabelButton {
  std::string title;
  std::string toolTip = {};
  bool shouldCenterTitle = false;
  platform::Action action;
  bool isDisabled = false;
  platform::State<bool> isHovering{false};

  platform::View body() const;
};

}  // namespace velkin
