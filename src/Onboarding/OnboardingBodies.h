#pragma once

#include "Platform/View/View.h"

namespace velkin {

/// The search bar's API key: where to get it, and a row to enter it.
struct OnboardingApiKeyUIView {
  platform::View body() const;
};

/// The menu's entries with their shortcuts.
struct OnboardingMenuItemsUIView {
  platform::View body() const;
};

}  // namespace velkin
