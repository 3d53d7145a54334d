#include "Helpers/UserDefaultsHelper.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "SideBar/EditSidebarGroupButtonView.h"
#include "SideBar/SidebarGroupUIView.h"
#include "SideBar/ToolbarCheckboxUIView.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::State;
using enum WebViewSwitchType;

struct Editor {
  State<SidebarGroup> group{SidebarGroup{}};
  State<bool> isNil{true};
  EditSidebarGroupButtonView view{.imageIconName = "1.square",
                                  .title = "Sidebar 1",
                                  .group = group.binding(),
                                  .isGroupNil = isNil.binding()};

  void choose(int main, int first, int second) const {
    view.mainView.set(main);
    view.sidebar1.set(first);
    view.sideBar2.set(second);
  }
};

TEST(EditSidebarGroupButtonViewTest, DoneNeedsAMainViewAndASidebarAndNoViewTwice) {
  const platform::HeadlessPlatform desktop;
  const Editor editor;
  int allowed = 0;
  for (int main = 0; main < 8; ++main) {
    for (int first = 0; first < 8; ++first) {
      for (int second = 0; second < 8; ++second) {
        editor.choose(main, first, second);
        const bool isGroup =
            main != 0 && (first != 0 || second != 0) && first != main && second != main && first != second;
        EXPECT_EQ(editor.view.isDoneDisabled(), !isGroup) << main << first << second;
        allowed += isGroup ? 1 : 0;
      }
    }
  }
  // Seven main views; each with one sidebar at either place, or with two of the other six in order.
  EXPECT_EQ(allowed, 7 * (6 + 6 + 6 * 5));
}

TEST(EditSidebarGroupButtonViewTest, TellsWhatIsNotSet) {
  const platform::HeadlessPlatform desktop;
  const Editor editor;
  EXPECT_TRUE(editor.view.didNotSetMainOrAnySideBar());
  editor.choose(3, 3, 3);
  EXPECT_FALSE(editor.view.didNotDuplicateMain());
  EXPECT_FALSE(editor.view.didNotSetMain() || editor.view.didNotSetSide1() || editor.view.didNotSetSide2());
  editor.choose(3, 3, 0);
  EXPECT_TRUE(editor.view.didNotDuplicateMain());
  EXPECT_TRUE(editor.view.didNotSetSide2());
}

TEST(EditSidebarGroupButtonViewTest, ThePickersOfferNothingAndTheSevenViews) {
  const platform::HeadlessPlatform desktop;
  const Editor editor;
  EXPECT_EQ(editor.view.getPickerText(0), "- - -");
  for (int i = 1; i <= 7; ++i)
    EXPECT_EQ(editor.view.getPickerText(i), viewName(static_cast<WebViewSwitchType>(i - 1)));
  EXPECT_EQ(editor.view.getPickerText(8), "- - -");
}

/// The name of a box, and whether it is checked.
using Box = std::pair<std::string, bool>;

std::vector<Box> checkBoxes(platform::HeadlessHostingView& tree) {
  std::vector<Box> found;
  for (const auto* view : tree.all<platform::CheckBoxContent>()) {
    const auto& element = view->element();
    found.emplace_back(element.modifiers.label,
                       std::get<platform::CheckBoxContent>(element.content).isOn.get());
  }
  return found;
}

class GroupsTest : public testing::Test {
 protected:
  platform::HeadlessHostingView& tree() {
    if (!controller_) {
      controller_ = std::make_unique<platform::NSHostingController<SidebarGroupUIView>>(
          SidebarGroupUIView{.sharedState = std::make_shared<SharedState>(), .action = [this] { ++stored; }});
    }
    auto& shown = platform::headlessTree(*controller_);
    desktop.queue.drain();
    return shown;
  }
  std::vector<platform::HeadlessView*> pickers() { return tree().all<platform::PickerContent>(); }
  void open(const std::string& label) {
    auto* button = tree().control(label);
    ASSERT_NE(button, nullptr) << label;
    button->press();
    desktop.queue.drain();
  }
  void choose(int main, int first, int second) {
    const int options[] = {main, first, second};
    for (std::size_t i = 0; i < 3; ++i) {
      ASSERT_EQ(pickers().size(), 3U);
      pickers()[i]->select(options[i]);
      desktop.queue.drain();
    }
  }
  void done() {
    tree().control("Done")->press();
    desktop.queue.drain();
  }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  int stored = 0;

 private:
  std::unique_ptr<platform::NSHostingController<SidebarGroupUIView>> controller_;
};

TEST_F(GroupsTest, AnEmptySlotShowsDashesUntilAGroupIsStored) {
  EXPECT_NE(tree().control("Sidebar 1: ---"), nullptr);
  open("Sidebar 1: ---");
  EXPECT_TRUE(tree().showsText("SideBar Group #1"));
  choose(6, 7, 0);
  ASSERT_EQ(checkBoxes(tree()), (std::vector<Box>{{"FullScreen", false}}));
  tree().control("FullScreen")->press();
  desktop.queue.drain();
  EXPECT_EQ(checkBoxes(tree()), (std::vector<Box>{{"FullScreen", true}}));
  done();
  EXPECT_EQ(defaults.getString(UserDefault::sideBarGroup1), "56-1");
  EXPECT_EQ(stored, 1);
  EXPECT_EQ(pickers().size(), 0U);
  EXPECT_NE(tree().control("Sidebar 1: 🅵" + std::string(viewName(jira)) + ", " +
                           std::string(viewName(markdown)) + " ---"),
            nullptr);
  EXPECT_NE(tree().control("Sidebar 2: ---"), nullptr);
}

TEST_F(GroupsTest, TheSecondSidebarAloneIsStoredWithADashAndReadsBackWithItsQuirk) {
  open("Sidebar 4: ---");
  choose(1, 0, 6);
  done();
  EXPECT_EQ(defaults.getString(UserDefault::sideBarGroup4), "0-50");
  const auto group = defaults.sideBarGroup4();
  ASSERT_TRUE(group);
  EXPECT_EQ(group->sideBar1, jira);
  EXPECT_EQ(group->sideBar2, jira);
}

TEST_F(GroupsTest, DoneThatIsDisabledStoresNothing) {
  open("Sidebar 2: ---");
  choose(1, 1, 0);
  EXPECT_FALSE(tree().control("Done")->isEnabled());
  done();
  EXPECT_EQ(defaults.getString(UserDefault::sideBarGroup2), "");
  EXPECT_EQ(stored, 0);
}

TEST_F(GroupsTest, AStoredGroupIsShownAndItsEditorBeginsWithIt) {
  defaults.setSidebarGroup({.isFullScreen = true, .mainView = bard, .sideBar1 = gitlab, .sideBar2 = jira},
                           UserDefault::sideBarGroup3);
  const auto label = "Sidebar 3: 🅵" + std::string(viewName(bard)) + ", " + std::string(viewName(gitlab)) +
                     " " + std::string(viewName(jira));
  open(label);
  ASSERT_EQ(pickers().size(), 3U);
  const int expected[] = {2, 4, 6};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(std::get<platform::PickerContent>(pickers()[i]->element().content).selection.get(),
              expected[i]);
  }
  EXPECT_EQ(checkBoxes(tree()), (std::vector<Box>{{"FullScreen", true}}));
}

TEST_F(GroupsTest, TheToolbarsBoxFollowsTheSharedStateAndAsksForTheChange) {
  const auto state = std::make_shared<SharedState>();
  int asked = 0;
  platform::NSHostingController<ToolbarCheckboxUIView> box(
      ToolbarCheckboxUIView{.sharedState = state, .action = [&] { ++asked; }});
  auto& shown = platform::headlessTree(box);
  desktop.queue.drain();
  ASSERT_EQ(checkBoxes(shown), (std::vector<Box>{{"Show Toolbar", true}}));
  shown.control("Show Toolbar")->press();
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(state->showToolbar.get());
  shown.all<platform::CheckBoxContent>().front()->press();
  EXPECT_EQ(asked, 2) << "the box itself does what its title does";
  state->showToolbar.set(false);
  desktop.queue.drain();
  EXPECT_EQ(checkBoxes(shown), (std::vector<Box>{{"Show Toolbar", false}}));
}

}  // namespace
}  // namespace velkin
