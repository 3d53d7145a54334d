#pragma once

#include "Platform/View/View.h"
#include "Values/MenuHelperDelegate.h"

namespace velkin {

/// The row of icon buttons above the main view.
struct ToolbarUIView {
  MenuHelperDelegate* menuDelegate = nullptr;
  double padding = 4;
  double iconSize = 12;

  platform::View body() const;
};

}  // namespace velkin
