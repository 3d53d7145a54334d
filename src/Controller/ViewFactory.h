#pragma once

#include "Controller/PopoverContent.h"
#include "Platform/NSViewController.h"
#include "SearchBar/AnswerPage.h"
#include "Values/AppearanceUIViewDelegate.h"
#include "Values/MenuHelperDelegate.h"
#include "Values/PageDelegates.h"

#include <memory>

namespace velkin {

/// Makes the views that fill the popover and the panels, with whom they call back on. Main thread.
class ViewFactory {
 public:
  using Controller = std::shared_ptr<platform::NSViewController>;

  /// All outlive the views.
  struct Delegates {
    MenuHelperDelegate* menu = nullptr;
    ReleaseNotesUIViewDelegate* releaseNotes = nullptr;
    AboutUIViewDelegate* about = nullptr;
    AppearanceUIViewDelegate* appearance = nullptr;
    EasterEggUrlEditingUIViewDelegate* urlEditing = nullptr;
    OnboardingUIViewDelegate* onboarding = nullptr;
  };

  ViewFactory(Delegates delegates, PopoverContent& content) : delegates_(delegates), content_(content) {}

  /// The main container around the page that has the main place now.
  std::shared_ptr<platform::NSHostingController<FindableWebView>> container() const;
  std::shared_ptr<platform::NSHostingController<ReleaseNotesUIView>> releaseNotes() const;
  Controller onboarding() const;
  Controller editUrls() const;
  Controller searchBar() const;
  Controller about() const;
  Controller shortcuts() const;
  Controller appearance() const;

 private:
  Delegates delegates_;
  PopoverContent& content_;
  std::shared_ptr<KeptPreview> preview_ = std::make_shared<KeptPreview>();
  std::shared_ptr<KeptAnswerView> answerView_ = std::make_shared<KeptAnswerView>();
};

}  // namespace velkin
