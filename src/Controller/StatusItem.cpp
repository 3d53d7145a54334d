#include "Controller/StatusItem.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/FatalError.h"
#include "Platform/NSApplication.h"
#include "Platform/TrayClicks.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"

#include <string>
#include <utility>

namespace velkin {

using platform::debugLog;
using platform::NSEvent;
using platform::NSMenuItem;
using platform::NSPopover;

namespace {

constexpr double statusItemLength = 28;
constexpr platform::NSSize statusImageSize{22, 22};

/// Turns the item's check mark round; returns whether it is on now.
bool toggle(NSMenuItem& item) {
  const bool isOn = item.state() == NSMenuItem::State::off;
  item.setState(isOn ? NSMenuItem::State::on : NSMenuItem::State::off);
  return isOn;
}

}  // namespace

StatusItem::StatusItem(PopoverContent& content, MenuHelperDelegate& actions,
                       platform::NSMenuDelegate& menuDelegate)
    : menuBarItem(menuBar.statusItem(statusItemLength)),
      menu(menuBarItem->menu ? menuBarItem->menu : std::make_shared<platform::NSMenu>()),
      content_(content),
      actions_(actions),
      menuDelegate_(menuDelegate) {}

MenuHelper& StatusItem::menuBarHelper() {
  if (!menuBarHelper_) menuBarHelper_ = std::make_unique<MenuHelper>(&actions_);
  return *menuBarHelper_;
}

void StatusItem::setUp() {
  auto* button = menuBarItem->button();
  if (button == nullptr) return;
  button->setImage({"velkin.diamondgear.black", statusImageSize, true});
  button->action = [this] { clicked(); };
  button->sendActionOn =
      NSEvent::mask(NSEvent::EventType::leftMouseUp) | NSEvent::mask(NSEvent::EventType::rightMouseUp);
  if (platform::trayClicks() == platform::TrayClicks::menu) addWhatAClickDoesElsewhere();
  for (const auto& item : menuBarHelper().menuItems) menu->addItem(item);
  menu->delegate = &menuDelegate_;
  menu->autoenablesItems = false;
  menuBarItem->prepareMenu(menu);
}

void StatusItem::addWhatAClickDoesElsewhere() {
  // In a later turn, so that the menu can finish closing.
  const auto later = [alive = isAlive_.watch()](std::function<void()> work) {
    return [alive, work = std::move(work)] {
      platform::DispatchQueue::main().async([alive, work] {
        if (alive) work();
      });
    };
  };
  menu->addItem(std::make_shared<NSMenuItem>("Open Velkin", later([this] { open(); })));
  menu->addItem(std::make_shared<NSMenuItem>("Ask…", later([this] {
                                               if (ask) ask();
                                             })));
  menu->addItem(NSMenuItem::separator());
}

void StatusItem::open() {
  updatePopoverBehavior(false);
  if (!content_.popover->isShown()) togglePopover();
}

void StatusItem::clicked() {
  const auto& event = platform::NSApp().currentEvent;
  if (platform::unwrap(event).type == NSEvent::EventType::rightMouseUp) {
    debugLog("Right click!");
    updatePopoverBehavior(true);
    toggleMenu();
    return;
  }
  debugLog("Left click!");
  updatePopoverBehavior(false);
  togglePopover();
}

void StatusItem::updatePopoverBehavior(bool force) {
  const bool isSticky = menuBarHelper().stickyMenuItem->state() != NSMenuItem::State::off;
  const bool staysOpen = isSticky || (content_.popover->isShown() && force);
  content_.popover->behavior =
      staysOpen ? NSPopover::Behavior::applicationDefined : NSPopover::Behavior::transient;
}

void StatusItem::toggleMenu() {
  isDismissingPopUpMenu = true;
  if (isShowingPopUpMenu) {
    debugLog("Clear menu");
    isShowingPopUpMenu = false;
    menuBarItem->menu = nullptr;
    return;
  }
  debugLog(std::string("Set menu menuBar is showing ") + (menuBarItem->menu ? "true" : "false"));
  isShowingPopUpMenu = true;
  menuBarItem->popUpStatusItemMenu(menu);
}

void StatusItem::clearMenu() {
  isDismissingPopUpMenu = true;
  toggleMenu();
}

void StatusItem::menuDidClose() {
  isShowingPopUpMenu = false;
  isDismissingPopUpMenu = false;
  updatePopoverBehavior(false);
}

void StatusItem::togglePopover() {
  if (!content_.popover->isShown()) content_.forgetSearch();
  const auto last = defaults_.lastVisibleWebView();
  const bool useLargeSize = last == WebViewSwitchType::onboarding ||
                            last == WebViewSwitchType::releaseNotes || !defaults_.onboardingCompleted();
  content_.isInitialLaunch = false;
  if (!closePopover()) showPopover(useLargeSize);
}

bool StatusItem::closePopover() {
  if (!content_.popover->isShown()) return false;
  content_.popover->performClose();
  return true;
}

void StatusItem::showPopover(bool useLargeSize) {
  auto* button = menuBarItem->button();
  if (button == nullptr) return;
  if (useLargeSize) {
    content_.popover->setContentSize({rawValue(AppearanceWidth::medium), rawValue(AppearanceHeight::medium)});
  } else {
    content_.popover->setContentSize({windowSize(fromRawValue<AppearanceWidth>(defaults_.webViewWidth())),
                                      windowSize(fromRawValue<AppearanceHeight>(defaults_.webViewHeight()))});
  }
  content_.popover->show(button->bounds(), *button, platform::NSRectEdge::maxY);
  // Whoever opens the popover wants to write.
  if (!content_.sharedState->isSearching.get()) content_.giveKeyboardToMainView();
}

void StatusItem::toggleSticky() {
  const bool isOn = toggle(*menuBarHelper().stickyMenuItem);
  debugLog("VelkinImpl", "stickyClicked()", isOn ? "on" : "off");
  defaults_.set(isOn, UserDefault::stickyMenu);
  updatePopoverBehavior(false);
}

void StatusItem::toggleToolbar() {
  const bool isOn = toggle(*menuBarHelper().showToolbarMenuItem);
  debugLog("VelkinImpl", "toolbarClicked()", isOn ? "on" : "off");
  defaults_.set(isOn, UserDefault::showToolBar);
  content_.sharedState->showToolbar.set(isOn);
}

void StatusItem::toggleExperimental() {
  const bool isOn = toggle(*menuBarHelper().experimentalMenuItem);
  debugLog("VelkinImpl", "experimentalClicked()", isOn ? "on" : "off");
  defaults_.set(isOn, UserDefault::experimentalEnabled);
}

}  // namespace velkin
