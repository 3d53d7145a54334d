#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>
#include <vector>

namespace velkin {

/// The zoom of the pages, as a choice of its steps. `didSelect` is told of a chosen zoom, which is stored.
struct OnboardingFontSizeUIView {
  std::function<void(double)> didSelect;
  platform::State<int> revision{0};

  platform::View body() const;
};

/// The window's width and height, as choices of their steps. Stored at once; the window takes them when the
/// onboarding, which has a size of its own, is over.
struct OnboardingWindowSizeUIView {
  platform::State<int> revision{0};

  platform::View body() const;
};

/// The search bar's API key: where to get it, and a row to enter it.
struct OnboardingApiKeyUIView {
  platform::View body() const;
};

/// The menu's entries with their shortcuts.
struct OnboardingMenuItemsUIView {
  platform::View body() const;
};

}  // namespace velkin
