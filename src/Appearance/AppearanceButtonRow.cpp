#include "Appearance/AppearanceButtonRow.h"

#include <array>

namespace velkin {

namespace {

struct Row {
  const char* title;
  void (AppearanceUIViewDelegate::*action)();
};

constexpr std::array rows = {Row{"Release Notes", &AppearanceUIViewDelegate::didClickReleaseNotesButton},
                             Row{"Onboarding", &AppearanceUIViewDelegate::didClickOnboardingButton},
                             Row{"URLs & Shortcuts", &AppearanceUIViewDelegate::didClickEditUrlsButton}};

}  // namespace

platform::View AppearanceButtonRow::body() const {
  using namespace platform;
  Views buttons = {Spacer()};
  for (const auto& row : rows) {
    if (&row != rows.data()) buttons.push_back(Divider().padding(EdgeInsets::horizontal(dividerPadding)));
    buttons.push_back(Button(
        Text(row.title).lineLimit(1),
        [target = delegate, action = row.action] {
          if (target != nullptr) (target->*action)();
        },
        ButtonStyle::borderless));
  }
  buttons.push_back(Spacer());
  return HStack({.spacing = 8}, std::move(buttons)).frame({.minHeight = buttonAreaHeight});
}

}  // namespace velkin
