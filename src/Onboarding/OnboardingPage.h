#pragma once

#include "Platform/View/View.h"

#include <string>
#include <vector>

namespace velkin {

/// One page of the onboarding. Two are equal when their numbers are.
struct OnboardingPage {
  /// Points.
  double descriptionWidth = 420;
  /// From 1.
  int id = 0;
  std::string title;
  std::string description;
  platform::View bodyContent;

  bool operator==(const OnboardingPage& other) const { return id == other.id; }
};

/// Which pages there are. Whether the additional views are on is read once, when it is made.
struct OnboardingPageHelper {
  /// What the pages hold, in their order.
  struct Bodies {
    platform::View address;
    platform::View fontSize;
    platform::View windowSize;
    platform::View apiKey;
    platform::View shortcuts;
    platform::View menuItems;
  };

  explicit OnboardingPageHelper(Bodies bodies);

  bool isHemingwayEnabled;
  std::vector<OnboardingPage> fullOnboardingPages;
  /// Without the search bar's key.
  std::vector<OnboardingPage> slimOnboardingPages;

  const std::vector<OnboardingPage>& getOnboardingPages() const {
    return isHemingwayEnabled ? fullOnboardingPages : slimOnboardingPages;
  }
  int getOnboardingPageCount() const { return static_cast<int>(getOnboardingPages().size()); }
};

}  // namespace velkin
