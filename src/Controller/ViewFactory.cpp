#include "Controller/ViewFactory.h"

#include "Keyboard/GlobalShortcutsNoticeUIView.h"
#include "Markdown/MarkdownUIView.h"
#include "Onboarding/PagePlace.h"
#include "SearchBar/SearchBarView.h"

#include <utility>

namespace velkin {

using platform::NSHostingController;

namespace {

template <class V>
std::shared_ptr<NSHostingController<V>> host(V view) {
  return std::make_shared<NSHostingController<V>>(std::move(view));
}

}  // namespace

std::shared_ptr<NSHostingController<FindableWebView>> ViewFactory::container() const {
  // A new one each time: its text goes with it.
  content_.scratchpad = std::make_shared<MarkdownScratchpad>(preview_);
  return host(FindableWebView{.menuDelegate = delegates_.menu,
                              .scripting = content_.scripting,
                              .webView = content_.currentWebView,
                              .pages = content_.pages,
                              .markdownView = MarkdownUIView{.sharedState = content_.sharedState,
                                                             .pad = content_.scratchpad},
                              .sharedState = content_.sharedState});
}

std::shared_ptr<NSHostingController<ReleaseNotesUIView>> ViewFactory::releaseNotes() const {
  return host(ReleaseNotesUIView{delegates_.releaseNotes, content_.sharedState});
}

ViewFactory::Controller ViewFactory::onboarding() const { return host(PagePlace{"Onboarding"}); }
ViewFactory::Controller ViewFactory::editUrls() const { return host(PagePlace{"Edit URLs"}); }
ViewFactory::Controller ViewFactory::searchBar() const {
  return host(SearchBarView{.page = std::make_shared<AnswerPage>(answerView_)});
}

ViewFactory::Controller ViewFactory::about() const {
  auto controller = host(PagePlace{"About Velkin"});
  controller->title = "Velkin";
  return controller;
}

ViewFactory::Controller ViewFactory::shortcuts() const {
  return host(PagePlace{"Shortcuts", globalShortcutsNotice()});
}

ViewFactory::Controller ViewFactory::appearance() const { return host(PagePlace{"Appearance"}); }

}  // namespace velkin
