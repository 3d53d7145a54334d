#include "Onboarding/OnboardingPage.h"

#include "Helpers/UserDefaultsHelper.h"

#include <utility>

namespace velkin {

namespace {

constexpr int searchBarPage = 4;

}  // namespace

OnboardingPageHelper::OnboardingPageHelper(Bodies bodies)
    : isHemingwayEnabled(UserDefaultsHelper().hemingwayEnabled()) {
  const char* const later = "Use shortcuts or Appearance to change later.";
  const auto add = [this](const char* title, const char* description, platform::View body) {
    OnboardingPage page{.id = static_cast<int>(fullOnboardingPages.size()) + 1,
                        .title = title,
                        .description = description,
                        .bodyContent = std::move(body)};
    if (page.id != searchBarPage) slimOnboardingPages.push_back(page);
    fullOnboardingPages.push_back(std::move(page));
  };
  add("Welcome to Velkin",
      "The feature rich AI menu bar app. \nEnter chat URL then Click \"Next\" to get started. :-)",
      std::move(bodies.address));
  add("Select Font Size", later, std::move(bodies.fontSize));
  add("Select Window Size", later, std::move(bodies.windowSize));
  add("Quick Search Bar",
      "Spotlight style search bar for quick one line chat prompts. Results can be easily copied for use "
      "later.\n\nEnter api key to get started.",
      std::move(bodies.apiKey));
  add("Keyboard Shortcuts", "", std::move(bodies.shortcuts));
  add("Right Click Menu", "Right Click menu bar icon to see application menu.", std::move(bodies.menuItems));
}

}  // namespace velkin
