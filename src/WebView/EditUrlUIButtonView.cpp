#include "WebView/EditUrlUIButtonView.h"

#include "Components/MarkdownUIMenuButton.h"
#include "Components/MarkdownUIPopOver.h"
#include "Components/OnboardingEditChatUrlUIView.h"
#include "Helpers/ViewAddresses.h"
#include "Values/AddressText.h"
#include "Values/WebViewSwitchType.h"

namespace velkin {

using namespace platform;

namespace {

constexpr double bubbleWidth = 360;

std::string defaultAddress() {
  return std::string(defaultUrlString(UserDefaultsHelper().lastVisibleWebView()));
}

}  // namespace

void EditUrlUIButtonView::resetUpdateUrlTet() const {
  const auto at = webButton ? webButton->webView->url() : std::nullopt;
  // A page that shows no web address, as after a failure, has none to come back to.
  updateUrlText.set(at && isWebAddress(*at) ? at->absoluteString() : std::string());
}

void EditUrlUIButtonView::open() const {
  resetUpdateUrlTet();
  const UserDefaultsHelper defaults;
  initialText.set(defaults.getString(defaults.lastVisibleUserDefault(), defaultAddress()));
}

void EditUrlUIButtonView::store(const std::string& text) const {
  const UserDefaultsHelper defaults;
  defaults.set(text, defaults.lastVisibleUserDefault());
  urlText.set(text);
  initialText.set(text);
}

View EditUrlUIButtonView::settings() const {
  const auto wrapped = [](const char* text, Font font) {
    return Text(text).font(font).multilineTextAlignment(Alignment::center).frame({.width = bubbleWidth});
  };
  const auto present = updateUrlText.get();
  // Each address its own row: what was typed for another one is gone with it.
  const std::vector<std::string> address{initialText.get()};
  return VStack({.spacing = 8, .alignment = Alignment::fill},
                {wrapped("URL Settings", Font::body),
                 wrapped("Enter custom url or use the action buttons.\nThis will change the saved url for this "
                         "page only.",
                         Font::subheadline),
                 ForEach(
                     address, [](const std::string& text) { return text; },
                     [this](const std::string& text) {
                       return OnboardingEditChatUrlUIView{
                           .item = UserDefaultsHelper().lastVisibleEasterEgg(),
                           .initialText = text,
                           .isValidURL = isValidURL.binding(),
                           .action = [urlText = urlText](const std::string& stored) { urlText.set(stored); }};
                     }),
                 MarkdownUIMenuButton{.title = "Update",
                                      .toolTip = "Change saved URL to:\n\n" + present,
                                      .shouldCenterTitle = true,
                                      .action = [self = *this,
                                                 present] { self.store(present); },
                                      .isDisabled = present.empty()},
                 MarkdownUIMenuButton{.title = "Reset",
                                      .toolTip = "Reset URL to:\n\n" + defaultAddress(),
                                      .shouldCenterTitle = true,
                                      .action = [self = *this] { self.store(defaultAddress()); }},
                 wrapped("Hover over buttons for details.", Font::caption)})
      .padding(12);
}

View EditUrlUIButtonView::body() const {
  return MarkdownUIPopOver{.imageName = "ellipsis",
                           .title = "Page Settings",
                           .buttons = [self = *this] { return self.settings(); },
                           .iconSize = iconSize,
                           .action = [self = *this] { self.open(); },
                           .showPopOver = shouldShowURLPopover.binding()};
}

}  // namespace velkin
