#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// An icon button that opens a bubble with further buttons. Its title is its tooltip.
struct MarkdownUIPopOver {
  std::string imageName;
  std::string title;
  bool useFixedWidth = false;
  /// What the bubble holds.
  std::function<platform::View()> buttons;
  double iconSize = 12;
  platform::Action action = {};
  platform::Binding<bool> showPopOver;
  bool isDisabled = false;

  platform::View body() const;
};

}  // namespace velkin
