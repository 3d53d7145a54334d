#include "Onboarding/OnboardingBodies.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/QKKeyboardShortcuts.h"
#include "Keyboard/ShortcutLegend.h"
#include "Onboarding/EasterEggFeatureLabelUIView.h"
#include "Platform/NSWorkspace.h"
#include "Platform/URL.h"
#include "Values/AppearanceFontSize.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"
#include "Values/ServiceAddresses.h"

#include <array>
#include <utility>

namespace velkin {

using namespace platform;

namespace {

template <class Scale>
int positionOf(const Scale& scale, typename Scale::value_type value) {
  for (std::size_t i = 0; i < scale.size(); ++i) {
    if (scale[i] == value) return static_cast<int>(i);
  }
  return 0;
}

template <class Scale>
std::vector<std::string> labelsOf(const Scale& scale) {
  std::vector<std::string> labels;
  for (const auto step : scale) labels.emplace_back(stringValue(step));
  return labels;
}

/// A radio group over a scale.
template <class Scale>
View choice(const std::string& heading, const Scale& scale, std::function<typename Scale::value_type()> get,
            std::function<void(typename Scale::value_type)> set) {
  const Binding<int> selection([&scale, get = std::move(get)] { return positionOf(scale, get()); },
                               [&scale, set = std::move(set)](int i) {
                                 if (i >= 0 && i < static_cast<int>(scale.size()))
                                   set(scale[static_cast<std::size_t>(i)]);
                               });
  return VStack({.spacing = 6, .alignment = Alignment::leading},
                {Text(heading).font(Font::headline),
                 Picker(heading, labelsOf(scale), selection, PickerStyle::radioGroup)});
}

/// The entries of the menu that act, in its order.
constexpr std::array menuRows = {
    QKKeyboardShortcuts::about,          QKKeyboardShortcuts::shortcuts,  QKKeyboardShortcuts::stickyMenu,
    QKKeyboardShortcuts::toolbar,        QKKeyboardShortcuts::preferencesMenu,
    QKKeyboardShortcuts::appearance,     QKKeyboardShortcuts::reload,     QKKeyboardShortcuts::openBrowser,
    QKKeyboardShortcuts::quit};

std::string getCommandString(QKKeyboardShortcuts menuItem) {
  return getDisplayString(keyEquivalent(menuItem), category(menuItem));
}

}  // namespace

View OnboardingFontSizeUIView::body() const {
  return choice<decltype(allAppearanceFontSizes)>(
      "Font Size", allAppearanceFontSizes,
      [] { return fromRawValue<AppearanceFontSize>(UserDefaultsHelper().webViewZoom()); },
      [self = *this](AppearanceFontSize size) {
        UserDefaultsHelper().set(rawValue(size), UserDefault::webViewZoom);
        if (self.didSelect) self.didSelect(rawValue(size));
        self.revision.set(self.revision.get() + 1);
      });
}

View OnboardingWindowSizeUIView::body() const {
  const auto store = [revision = revision](double length, UserDefault key) {
    UserDefaultsHelper().set(length, key);
    revision.set(revision.get() + 1);
  };
  return HStack(
      {.spacing = 48, .alignment = Alignment::top},
      {choice<decltype(allAppearanceWidths)>(
           "Width:", allAppearanceWidths,
           [] { return fromRawValue<AppearanceWidth>(UserDefaultsHelper().webViewWidth()); },
           [store](AppearanceWidth width) { store(rawValue(width), UserDefault::webViewWidth); }),
       choice<decltype(allAppearanceHeights)>(
           "Height:", allAppearanceHeights,
           [] { return fromRawValue<AppearanceHeight>(UserDefaultsHelper().webViewHeight()); },
           [store](AppearanceHeight height) { store(rawValue(height), UserDefault::webViewHeight); })});
}

View OnboardingApiKeyUIView::body() const {
  return VStack({.spacing = 12, .alignment = Alignment::fill},
                {EasterEggFeatureLabelUIView{.item = EasterEggItem::search},
                 HStack({Button("Get Key",
                                [] {
                                  if (const auto page = URL::parse(serviceAddresses.keyPage))
                                    NSWorkspace::shared().open(*page);
                                })
                             .help("Opens the page of the provider in the browser")})});
}

View OnboardingMenuItemsUIView::body() const {
  Views rows;
  for (const auto item : menuRows) {
    const auto command = getCommandString(item);
    rows.push_back(HStack({Text(std::string(rawValue(item)))
                               .frame({.maxWidth = infinity, .alignment = Alignment::leading}),
                           when(!command.empty(), [&] {
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
