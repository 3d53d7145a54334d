#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// One mark for each page, the one on show emphasised.
struct OnboardingPageIndicator {
  int pageCount = 0;
  int currentPage = 0;

  platform::View body() const;
};

/// To the next page.
struct OnboardingButton {
  std::string title;
  platform::Action action;
  bool isDisabled = false;

  platform::View body() const;
};

/// In the place of the button "Next" on the last page. It takes the keyboard, which that one had, and doesn't
/// take a click too many at it.
struct OnboardingDoneButton {
  platform::Action action;
  platform::State<bool> isFocused{true};

  platform::View body() const;
};

/// What stands below pages that are turned.
struct PageControlUIView {
  int pageCount = 0;
  platform::Binding<int> currentPage;
  bool isNextDisabled = false;
  platform::Action done;
  /// Points.
  double pageControlAreaHeight = 56;

  platform::View body() const;
};

}  // namespace velkin
