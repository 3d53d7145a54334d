#include "Onboarding/EasterEggEnabledUIView.h"

#include "Onboarding/EasterEggFeatureLabelUIView.h"

#include <string>

namespace velkin {

platform::View EasterEggEnabledUIView::body() const {
  using namespace platform;
  const bool isEnabled = isHemingwayEnabled->get();
  int id = 0;
  return VStack(
      {.spacing = 8, .alignment = Alignment::fill},
      {Text(isEnabled ? "Additional Views Enabled :-)" : "URL")
           .font(Font::headline)
           .foregroundColor(isEnabled ? Color::Role::orange : Color::Role::purple)
           .padding(EdgeInsets::vertical(8))
           .accessibilityRole(AccessibilityRole::heading),
       ForEach(
           isEnabled ? enhancedItems : basicItems, [](EasterEggItem item) { return std::string(title(item)); },
           [&](EasterEggItem item) {
             return EasterEggFeatureLabelUIView{
                 .id = id++, .item = item, .isEditable = isEditable, .currentPage = currentPage};
           })});
}

}  // namespace velkin
