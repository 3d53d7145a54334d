#pragma once

#include "Controller/SearchPanel.h"
#include "Controller/Sidebars.h"
#include "Controller/StatusItem.h"
#include "Controller/ViewFactory.h"
#include "Controller/WindowGeometry.h"

#include <functional>
#include <memory>

namespace velkin {

/// Decides what the popover shows, and builds its content anew around the same pages. Main thread.
class ViewSwitcher {
 public:
  /// All outlive the switcher.
  struct Rooms {
    PopoverContent& content;
    const ViewFactory& views;
    Sidebars& sidebars;
    WindowGeometry& geometry;
    StatusItem& statusItem;
    SearchPanel& searchPanel;
  };

  explicit ViewSwitcher(Rooms rooms) : rooms_(rooms) {}

  /// What comes first after the launch: the release notes of a build that is new to the user, else chat.
  void showFirst();
  void switchTo(WebViewSwitchType view);
  /// `rawValue` of a view; chat for any other number.
  void switchToNumber(int rawValue);
  /// Brings a view on the screen, whatever is on show.
  void bringUp(WebViewSwitchType view);
  /// From 1; chat for a number that has no group.
  void showGroup(int number);
  /// Makes the page of what was visible last the current one.
  void updateCurrentWebView();
  /// Opens the search bar, or closes what Escape would close.
  void toggleSearchBar(const std::function<void()>& escape);
  /// To the onboarding, until it was completed once.
  void releaseNotesAreRead();
  /// Notes it, and goes on to the release notes if they are new to the user, else to chat.
  void onboardingIsDone();
  /// From a page that changed what there is to see. Whether the popover is open stays as it is.
  void backToChat();

 private:
  void showPage(WebViewSwitchType view, bool isToggle);
  void showContainer(WebViewSwitchType shown, bool isToggle);
  /// As the view on show.
  void note(WebViewSwitchType view);
  void showPlace(WebViewSwitchType view, std::shared_ptr<platform::NSViewController> place);

  Rooms rooms_;
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
