#include "Onboarding/OnboardingBodies.h"

#include "Keyboard/QKKeyboardShortcuts.h"
#include "Keyboard/ShortcutLegend.h"
#include "Onboarding/EasterEggFeatureLabelUIView.h"
#include "Platform/NSWorkspace.h"
#include "Platform/URL.h"
#include "Values/ServiceAddresses.h"

#include <array>
#include <utility>

namespace velkin {

using namespace platform;

namespace {

/// The entries of the menu that act, in its order.
constexpr std::array menuRows = {
    QKKeyboardShortcuts::about,   QKKeyboardShortcuts::shortcuts,       QKKeyboardShortcuts::stickyMenu,
    QKKeyboardShortcuts::toolbar, QKKeyboardShortcuts::preferencesMenu, QKKeyboardShortcuts::appearance,
    QKKeyboardShortcuts::reload,  QKKeyboardShortcuts::openBrowser,     QKKeyboardShortcuts::quit};

std::string getCommandString(QKKeyboardShortcuts menuItem) {
  return getDisplayString(keyEquivalent(menuItem), category(menuItem));
}

}  // namespace

View OnboardingApiKeyUIView::body() const {
  return VStack({.spacing = 12, .alignment = Alignment::fill},
                {EasterEggFeatureLabelUIView{.item = EasterEggItem::search},
                 HStack({Button("Get Key", [] {
                           if (const auto page = URL::parse(serviceAddresses.keyPage))
                             NSWorkspace::shared().open(*page);
                         }).help("Opens the page of the provider in the browser")})});
}

View OnboardingMenuItemsUIView::body() const {
  Views rows;
  for (const auto item : menuRows) {
    const auto command = getCommandString(item);
    rows.push_back(
        HStack(
            {Text(std::string(rawValue(item))).frame({.maxWidth = infinity, .alignment = Alignment::leading}),
             when(!command.empty(),
                  [&] {
                    return Text(command)
                        .foregroundColor(Color::Role::secondary)
                        .accessibilityLabel(spelledOut(command));
                  })})
            .frame({.width = 260}));
  }
  rows.push_back(
      Text(std::string(shortcutLegend)).font(Font::caption).foregroundColor(Color::Role::secondary));
  return VStack({.spacing = 8}, std::move(rows));
}

}  // namespace velkin
