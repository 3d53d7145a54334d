#include "Controller/StatusItem.h"
#include "MenuHelper.h"
#include "unit/Controller/RoomFixture.h"

#include <utility>

namespace velkin {
namespace {

using platform::NSEvent;
using platform::NSMenuItem;
using platform::NSPopover;

class StatusItemTest : public RoomFixture {
 protected:
  platform::HeadlessStatusItem& icon() const { return *desktop.statusItems.back(); }
  NSPopover& popover() const { return *content.popover; }

  MenuListener listener;
  StatusItem status{content, listener, listener};
};

TEST_F(StatusItemTest, TheIconIsATemplateAndTellsBothClicks) {
  status.setUp();
  EXPECT_EQ(icon().length(), 28);
  EXPECT_EQ(icon().statusButton.image.name, "velkin.diamondgear.black");
  EXPECT_EQ(icon().statusButton.image.size, (platform::NSSize{22, 22}));
  EXPECT_TRUE(icon().statusButton.image.isTemplate);
  EXPECT_EQ(icon().statusButton.sendActionOn,
            NSEvent::mask(NSEvent::EventType::leftMouseUp) | NSEvent::mask(NSEvent::EventType::rightMouseUp));
  EXPECT_EQ(icon().preparedMenu, status.menu);
  EXPECT_EQ(status.menu->items(), status.menuBarHelper().menuItems);
  EXPECT_FALSE(status.menu->autoenablesItems);
}

TEST_F(StatusItemTest, ALeftClickTogglesThePopoverAndARightOneTheMenu) {
  status.setUp();
  icon().statusButton.click(NSEvent::EventType::leftMouseUp);
  EXPECT_TRUE(popover().isShown());
  icon().statusButton.click(NSEvent::EventType::rightMouseUp);
  EXPECT_TRUE(popover().isShown()) << "the menu stands beside it";
  ASSERT_EQ(icon().poppedUp.size(), 1U);
  EXPECT_TRUE(status.isShowingPopUpMenu);
  icon().closeMenu(nullptr);
  EXPECT_EQ(listener.heard, std::vector<std::string>{"closed"});
  status.menuDidClose();
  EXPECT_FALSE(status.isShowingPopUpMenu);
  EXPECT_FALSE(status.isDismissingPopUpMenu);
  icon().statusButton.click(NSEvent::EventType::leftMouseUp);
  EXPECT_FALSE(popover().isShown());
}

TEST_F(StatusItemTest, AMenuThatIsUpIsCleared) {
  status.setUp();
  status.toggleMenu();
  status.toggleMenu();
  EXPECT_FALSE(status.isShowingPopUpMenu);
  EXPECT_TRUE(status.isDismissingPopUpMenu);
  EXPECT_EQ(icon().poppedUp.size(), 1U);
}

TEST_F(StatusItemTest, ThePopoverIsLargeUntilTheUserIsSettledIn) {
  defaults.set(980.0, UserDefault::webViewWidth);
  defaults.set(980.0, UserDefault::webViewHeight);
  status.togglePopover();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
  status.togglePopover();
  defaults.set(true, UserDefault::onboardingCompleted);
  status.togglePopover();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{980, 980}));
  status.togglePopover();
  defaults.set(rawValue(WebViewSwitchType::releaseNotes), UserDefault::lastVisibleWebView);
  content.view = WebViewSwitchType::releaseNotes;
  status.togglePopover();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
}

TEST_F(StatusItemTest, TheFirstToggleEndsTheLaunch) {
  content.isInitialLaunch = true;
  status.togglePopover();
  EXPECT_FALSE(content.isInitialLaunch);
}

TEST_F(StatusItemTest, TheKeyboardGoesToThePageUnlessTheFindBarHasIt) {
  show(WebViewSwitchType::chatgpt);
  page(WebViewSwitchType::chatgpt).isFirstResponder = false;
  content.sharedState->isSearching.set(true);
  status.showPopover(false);
  EXPECT_FALSE(page(WebViewSwitchType::chatgpt).isFirstResponder);
  EXPECT_TRUE(status.closePopover());
  EXPECT_FALSE(status.closePopover());
  content.sharedState->isSearching.set(false);
  status.showPopover(false);
  EXPECT_TRUE(page(WebViewSwitchType::chatgpt).isFirstResponder);
}

TEST_F(StatusItemTest, WhoClosesThePopover) {
  status.updatePopoverBehavior(true);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient) << "nothing is forced on what isn't shown";
  showPopover();
  status.updatePopoverBehavior(true);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  status.updatePopoverBehavior(false);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
  status.toggleSticky();
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  status.toggleSticky();
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
}

TEST_F(StatusItemTest, ACheckMarkIsStoredAtOnce) {
  const auto& helper = status.menuBarHelper();
  const auto isOn = [](const MenuHelper::Item& entry) { return entry->state() == NSMenuItem::State::on; };
  const bool wasToolbar = isOn(helper.showToolbarMenuItem);
  status.toggleToolbar();
  EXPECT_EQ(isOn(helper.showToolbarMenuItem), !wasToolbar);
  EXPECT_EQ(defaults.showToolBar(), !wasToolbar);
  EXPECT_EQ(content.sharedState->showToolbar.get(), !wasToolbar);
  const bool wasSticky = isOn(helper.stickyMenuItem);
  status.toggleSticky();
  EXPECT_EQ(defaults.stickyMenu(), !wasSticky);
  const bool wasExperimental = isOn(helper.experimentalMenuItem);
  status.toggleExperimental();
  EXPECT_EQ(defaults.experimentalEnabled(), !wasExperimental);
}

}  // namespace
}  // namespace velkin
