#pragma once

#include "Components/IconSize.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

namespace velkin {

/// The program's icon. Whoever taps it often enough finds something.
struct AppIconUIView {
  IconSize iconSize = IconSize::medium;
  platform::Action action;
  int tapLimit = 7;
  platform::State<int> tapCounter{0};

  platform::View body() const;
};

}  // namespace velkin
