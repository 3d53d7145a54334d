#include "Onboarding/PageControlUIView.h"

#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr double markSize = 8;
constexpr double buttonWidth = 96;

}  // namespace

View OnboardingPageIndicator::body() const {
  Views marks;
  for (int page = 0; page < pageCount; ++page) {
    marks.push_back(HStack({.spacing = 0}, {})
                        .frame({.width = markSize, .height = markSize})
                        .background(page == currentPage ? Color(Color::Role::accent)
                                                        : Color(Color::Role::primary, 0.25))
                        .cornerRadius(markSize / 2));
  }
  return HStack({.spacing = markSize}, std::move(marks))
      .accessibilityRole(AccessibilityRole::status)
      .accessibilityLabel("Page " + std::to_string(currentPage + 1) + " of " + std::to_string(pageCount));
}

View OnboardingButton::body() const {
  return Button(title, action, ButtonStyle::prominent).frame({.minWidth = buttonWidth}).disabled(isDisabled);
}

View OnboardingDoneButton::body() const {
  return Button("Done", action, ButtonStyle::prominent)
      .frame({.minWidth = buttonWidth})
      .focused(isFocused.binding());
}

View PageControlUIView::body() const {
  const int page = currentPage.get();
  const bool isLast = page + 1 >= pageCount;
  const auto turn = [currentPage = currentPage, count = pageCount](int by) {
    const int next = currentPage.get() + by;
    if (next >= 0 && next < count) currentPage.set(next);
  };
  return HStack(
             {.spacing = 8},
             {Button("Previous", [turn] { turn(-1); }).frame({.minWidth = buttonWidth}).disabled(page == 0),
              Spacer(), OnboardingPageIndicator{pageCount, page}, Spacer(),
              when(!isLast,
                   [&] { return View(OnboardingButton{"Next", [turn] { turn(+1); }, isNextDisabled}); }),
              when(isLast, [&] { return View(OnboardingDoneButton{.action = done}); })})
      .padding(EdgeInsets::horizontal(16))
      .frame({.minHeight = pageControlAreaHeight, .maxWidth = infinity});
}

}  // namespace velkin
