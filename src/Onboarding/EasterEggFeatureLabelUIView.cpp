#include "Onboarding/EasterEggFeatureLabelUIView.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Keyboard/ShortcutLegend.h"
#include "Values/AddressText.h"

namespace velkin {

using namespace platform;

namespace {

constexpr double titleWidth = 140;
constexpr double keyWidth = 44;
/// In a narrower window an address would have no room beside its title.
constexpr double widthForOneLine = 540;

}  // namespace

bool EasterEggFeatureLabelUIView::isUnchanged() const {
  const auto text = inputText.get();
  return text == url(item) || text == editedText.get();
}

void EasterEggFeatureLabelUIView::saveClicked() const {
  if (isUnchanged()) return;
  const auto text = inputText.get();
  setUrl(item, isKey() ? trimmedAddress(text) : storableAddress(text));
  editedText.set(text);
  currentPage.set(0);
  if (action) action(text);
}

void EasterEggFeatureLabelUIView::resetClicked() const {
  inputText.set(editedText.get().empty() ? std::string() : url(item));
  if (action) action(inputText.get());
}

std::string EasterEggFeatureLabelUIView::placeholder() const {
  const bool hasKey = isKey() && !UserDefaultsHelper().getString(UserDefault::searchKey).empty();
  return hasKey ? "••••••••••••" : url(item);
}

View EasterEggFeatureLabelUIView::field() const {
  return TextField(
             placeholder(), inputText.binding(),
             {.onCommit = [self = *this] { self.saveClicked(); }, .isSecure = isKey() && !isKeyShown.get()})
      .accessibilityLabel(std::string(title(item)) + (isKey() ? "" : " URL"))
      .frame({.maxWidth = infinity})
      .disabled(!isEditable.get());
}

View EasterEggFeatureLabelUIView::showKeyButton() const {
  return Button(Symbol("eye").frame({.height = 16}), {}, ButtonStyle::borderless)
      .help("Hold down to show the key")
      .onPress([isKeyShown = isKeyShown](bool isDown) { isKeyShown.set(isDown); })
      .disabled(inputText.get().empty());
}

View EasterEggFeatureLabelUIView::body() const {
  const bool isOff = isUnchanged() || !isEditable.get();
  const auto edited = editedText.get();
  const bool isStrange =
      !isKey() && !edited.empty() && edited == inputText.get() && !isWebAddress(storableAddress(edited));
  const bool isNarrow = UserDefaultsHelper().webViewWidth() < widthForOneLine;
  const auto name = [&] {
    return HStack(
        {.spacing = 6},
        {Text(std::string(title(item))).frame({.width = titleWidth, .alignment = Alignment::leading}),
         Text(std::string(keyString(item)))
             .foregroundColor(Color::Role::secondary)
             .accessibilityLabel(spelledOut(keyString(item)))
             .frame({.width = keyWidth, .alignment = Alignment::leading})});
  };
  return VStack({.spacing = 2, .alignment = Alignment::fill},
                {when(isNarrow, name),
                 HStack({.spacing = 6},
                        {when(!isNarrow, name), field(), when(isKey(), [this] { return showKeyButton(); }),
                         Button(
                             Text("✓").foregroundColor(isOff ? Color(Color::Role::secondary, 0.5)
                                                             : Color(Color::Role::blue)),
                             [self = *this] { self.saveClicked(); }, ButtonStyle::borderless)
                             .help("Save")
                             .accessibilityLabel("Save " + std::string(title(item)))
                             .disabled(isOff),
                         Button(
                             "↺", [self = *this] { self.resetClicked(); }, ButtonStyle::borderless)
                             .help("Reset")
                             .accessibilityLabel("Reset " + std::string(title(item)))}),
                 when(isStrange, [] {
                   return Text("This is no web address.")
                       .font(Font::caption)
                       .foregroundColor(Color::Role::red)
                       .accessibilityRole(AccessibilityRole::alert)
                       .frame({.maxWidth = infinity, .alignment = Alignment::leading});
                 })});
}

}  // namespace velkin
