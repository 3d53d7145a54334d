#include "Onboarding/OnboardingUIView.h"

#include "Components/AppIconUIView.h"
#include "Components/OnboardingEditChatUrlUIView.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/ShortcutsUIView.h"
#include "Onboarding/OnboardingBodies.h"
#include "Onboarding/PageControlUIView.h"

#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr double addressWidth = 420;
/// Of each of two columns.
constexpr double shortcutWidth = 250;
constexpr const char* firstDescription =
    "The feature rich menubar browser app. \nEnter URL then Click \"Next\" to get started. :-)";

/// What the toolbar's page settings or the list stored since is the address in use.
std::string storedAddress() {
  const UserDefaultsHelper defaults;
  auto chat = defaults.getString(UserDefault::chatUrl);
  return chat.empty() ? defaults.onboardingChatURL() : chat;
}

}  // namespace

OnboardingUIView::OnboardingUIView(OnboardingUIViewDelegate* target, Pickers pickers)
    : delegate(target), chatURL(storedAddress()) {
  const OnboardingPageHelper helper(
      {.address =
           VStack({.spacing = 24},
                  {AppIconUIView{.iconSize = IconSize::large},
                   View(OnboardingEditChatUrlUIView{
                            .initialText = chatURL.get(),
                            .isValidURL = isValidURL.binding(),
                            .action = [chatURL = chatURL](const std::string& text) { chatURL.set(text); },
                            .validatesAtFirst = true})
                       .frame({.width = addressWidth})}),
       .fontSize = std::move(pickers.fontSize),
       .windowSize = std::move(pickers.windowSize),
       .apiKey = OnboardingApiKeyUIView{},
       .shortcuts = ShortcutsUIView{.gridWidth = shortcutWidth, .useSmallerFonts = true},
       .menuItems = OnboardingMenuItemsUIView{}});
  pages = helper.getOnboardingPages();
  pages.front().description = firstDescription;
  pageCount = helper.getOnboardingPageCount();
}

View OnboardingUIView::page(const OnboardingPage& page) const {
  return VStack({.spacing = 12},
                {Text(page.title).font(Font::title).accessibilityRole(AccessibilityRole::heading),
                 when(!page.description.empty(),
                      [&] {
                        return Text(page.description)
                            .multilineTextAlignment(Alignment::center)
                            .foregroundColor(Color::Role::secondary)
                            .frame({.width = page.descriptionWidth});
                      }),
                 page.bodyContent})
      .padding(EdgeInsets{20, 16, 8, 16})
      .frame({.maxWidth = infinity});
}

View OnboardingUIView::body() const {
  const auto& shown = pages[static_cast<std::size_t>(currentPage.get())];
  return VStack(
      {.spacing = 0, .alignment = Alignment::fill},
      {ScrollView(ForEach(
                      std::vector{shown}, [](const OnboardingPage& p) { return std::to_string(p.id); },
                      [this](const OnboardingPage& p) { return page(p); }))
           .frame({.maxWidth = infinity, .maxHeight = infinity}),
       Divider(),
       PageControlUIView{.pageCount = pageCount,
                         .currentPage = currentPage.binding(),
                         .isNextDisabled = !isValidURL.get(),
                         .done =
                             [target = delegate] {
                               if (target != nullptr) target->didCompleteOnboarding();
                             },
                         .pageControlAreaHeight = pageControlAreaHeight}});
}

}  // namespace velkin
