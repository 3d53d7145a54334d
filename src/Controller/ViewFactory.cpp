#include "Controller/ViewFactory.h"

#include "Appearance/AppearanceUIView.h"
#include "Appearance/DesktopUIView.h"
#include "Appearance/SizePickerUIView.h"
#include "Appearance/ZoomPickerUIView.h"
#include "Keyboard/ShortcutsUIView.h"
#include "Markdown/MarkdownUIView.h"
#include "Onboarding/AboutUIView.h"
#include "Onboarding/EasterEggUrlEditingUIView.h"
#include "Onboarding/OnboardingUIView.h"
#include "SearchBar/SearchBarView.h"
#include "SideBar/SidebarGroupUIView.h"
#include "SideBar/ToolbarCheckboxUIView.h"

#include <utility>

namespace velkin {

using platform::NSHostingController;

namespace {

template <class V>
std::shared_ptr<NSHostingController<V>> host(V view) {
  return std::make_shared<NSHostingController<V>>(std::move(view));
}

/// The choice of the window's size in a page as narrow as the onboarding's, which keeps its own size.
struct OnboardingSizeUIView {
  platform::State<AppearanceWidth> width{fromRawValue<AppearanceWidth>(UserDefaultsHelper().webViewWidth())};
  platform::State<AppearanceHeight> height{
      fromRawValue<AppearanceHeight>(UserDefaultsHelper().webViewHeight())};

  platform::View body() const {
    return platform::VStack(
        {.spacing = 12},
        {DesktopUIView{.selectedWidth = width.get(), .selectedHeight = height.get()},
         SizeRadioUIView{.selectedWidth = width.binding(), .selectedHeight = height.binding()}});
  }
};

}  // namespace

std::shared_ptr<NSHostingController<FindableWebView>> ViewFactory::container() const {
  // A new one each time: its text goes with it.
  content_.scratchpad = std::make_shared<MarkdownScratchpad>(preview_);
  return host(FindableWebView{
      .menuDelegate = delegates_.menu,
      .scripting = content_.scripting,
      .webView = content_.currentWebView,
      .pages = content_.pages,
      .markdownView = MarkdownUIView{.sharedState = content_.sharedState, .pad = content_.scratchpad},
      .sharedState = content_.sharedState});
}

std::shared_ptr<NSHostingController<ReleaseNotesUIView>> ViewFactory::releaseNotes() const {
  return host(ReleaseNotesUIView{delegates_.releaseNotes, content_.sharedState});
}

ViewFactory::Controller ViewFactory::onboarding() const {
  return host(OnboardingUIView(
      delegates_.onboarding,
      {.fontSize = ZoomPickerUIView{.webView = [&content = content_]() -> platform::WKWebView& {
                                      return *content.currentWebView.webView;
                                    },
                                    .samples = std::make_shared<ZoomSamples>()},
       .windowSize = OnboardingSizeUIView{}}));
}

ViewFactory::Controller ViewFactory::editUrls() const {
  return host(EasterEggUrlEditingUIView{.delegate = delegates_.urlEditing});
}

ViewFactory::Controller ViewFactory::searchBar() const {
  return host(SearchBarView{.page = std::make_shared<AnswerPage>(answerView_)});
}

ViewFactory::Controller ViewFactory::about() const {
  auto controller = host(AboutUIView{.delegate = delegates_.about});
  controller->title = "Velkin";
  return controller;
}

ViewFactory::Controller ViewFactory::shortcuts() const {
  return host(ShortcutsUIView{.delegate = delegates_.about});
}

ViewFactory::Controller ViewFactory::appearance() const {
  using namespace platform;
  auto* delegate = delegates_.appearance;
  const auto toggleToolbar = [delegate] {
    if (delegate != nullptr) delegate->didClickToolbarCheckbox();
  };
  const auto sideBar =
      HStack({.spacing = 24, .alignment = Alignment::top},
             {Spacer(), SidebarGroupUIView{.sharedState = content_.sharedState},
              ToolbarCheckboxUIView{.sharedState = content_.sharedState, .action = toggleToolbar}, Spacer()})
          .padding(EdgeInsets{8, 16, 8, 16});
  return host(AppearanceUIView{
      .delegate = delegate,
      .webView = [&content = content_]() -> WKWebView& { return *content.currentWebView.webView; },
      .sharedState = content_.sharedState,
      .sideBar = sideBar});
}

}  // namespace velkin
