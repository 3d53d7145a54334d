#pragma once

#include "Onboarding/OnboardingBodies.h"
#include "Onboarding/OnboardingPage.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/PageDelegates.h"

#include <functional>
#include <string>
#include <vector>

namespace velkin {

/// The pages that lead a new user in, one after the other.
struct OnboardingUIView {
  /// `pageZoom` brings a chosen zoom to the page on show.
  OnboardingUIView(OnboardingUIViewDelegate* delegate, std::function<void(double)> pageZoom);

  OnboardingUIViewDelegate* delegate;
  platform::State<int> currentPage{0};
  /// The address that the first page starts from; empty for whoever never entered one.
  platform::State<std::string> chatURL;
  platform::State<bool> isValidURL{false};
  double pageControlAreaHeight = 56;
  std::vector<OnboardingPage> pages;
  int pageCount;

  platform::View body() const;

 private:
  platform::View page(const OnboardingPage& page) const;
};

}  // namespace velkin
