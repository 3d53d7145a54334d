#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// An icon button that opens a bubble with a form in it: its title and a line below that, then the controls.
struct MarkdownLabeledUIPopOver {
  std::string imageName;
  std::string title;
  std::string subTitle = {};
  std::string toolTip = {};
  bool useFixedWidth = false;
  std::function<platform::View()> buttons;
  platform::Action action = {};
  platform::Binding<bool> showPopOver;
  double iconSize = 12;

  platform::View body() const;
};

}  // namespace velkin
