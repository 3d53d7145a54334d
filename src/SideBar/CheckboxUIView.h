#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// A row with a title and a box that is checked or not.
struct CheckboxUIView {
  std::string title;
  std::string tooltip;
  platform::Binding<bool> isChecked;
  platform::Binding<bool> isHovering;
  /// After the box was turned round.
  platform::Action action = {};

  platform::View body() const;
};

}  // namespace velkin
