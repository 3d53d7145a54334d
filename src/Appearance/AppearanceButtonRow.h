#pragma once

#include "Platform/View/View.h"
#include "Values/AppearanceUIViewDelegate.h"

namespace velkin {

/// The ways from the panel to the pages that introduce the program and change its addresses.
struct AppearanceButtonRow {
  AppearanceUIViewDelegate* delegate = nullptr;
  double buttonAreaHeight = 44;
  double dividerPadding = 2;

  platform::View body() const;
};

}  // namespace velkin
