#include "Onboarding/EasterEggUrlEditingUIView.h"

#include "Keyboard/GlobalShortcutsEditUIView.h"
#include "Keyboard/ShortcutLegend.h"
#include "Onboarding/EasterEggEnabledUIView.h"
#include "Onboarding/PageControlUIView.h"

#include <string>

namespace velkin {

platform::View EasterEggUrlEditingUIView::body() const {
  using namespace platform;
  constexpr int pageCount = 2;
  const auto page = [this]() -> View {
    if (currentPage.get() == 0)
      return EasterEggEnabledUIView{.currentPage = currentPage.binding(),
                                    .isHemingwayEnabled = isHemingwayEnabled};
    return GlobalShortcutsEditUIView{};
  };
  const auto note = [](std::string text) {
    return Text(std::move(text)).font(Font::caption).foregroundColor(Color::Role::secondary);
  };
  return VStack(
      {.spacing = 0, .alignment = Alignment::fill},
      {ScrollView(VStack({.spacing = 8, .alignment = Alignment::fill},
                         {Text(std::string("Edit Shortcut") + (isHemingwayEnabled->get() ? "s & URLs" : ""))
                              .font(Font::title)
                              .accessibilityRole(AccessibilityRole::heading),
                          note("Note: Reload while on page ('⌘⌥R') to use updated URLs."),
                          note(std::string(shortcutLegend)), VStack({.alignment = Alignment::fill}, {page()})})
                      .padding(24))
           .frame({.maxWidth = infinity, .maxHeight = infinity}),
       Divider(),
       PageControlUIView{.pageCount = pageCount,
                         .currentPage = currentPage.binding(),
                         .done = [target = delegate] { target->didClickEasterEggUrlEditingDone(); },
                         .pageControlAreaHeight = pageControlAreaHeight}});
}

}  // namespace velkin
