#pragma once

#include "Onboarding/OnboardingPage.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/PageDelegates.h"

#include <string>
#include <vector>

namespace velkin {

/// The pages that lead a new user in, one after the other.
struct OnboardingUIView {
  /// The choices of sizes, which other pages have too.
  struct Pickers {
    platform::View fontSize;
    platform::View windowSize;
  };

  OnboardingUIView(OnboardingUIViewDelegate* delegate, Pickers pickers);

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
