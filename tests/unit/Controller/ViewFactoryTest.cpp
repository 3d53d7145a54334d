#include "Controller/ViewFactory.h"
#include "unit/Controller/RoomFixture.h"

#include <string>

namespace velkin {
namespace {

class Notes : public ReleaseNotesUIViewDelegate {
 public:
  int done = 0;
  void didClickReleaseNotesDone() override { ++done; }
};

class ViewFactoryTest : public RoomFixture {
 protected:
  /// Everything that stands in the view, line by line.
  static std::string textsOf(platform::NSViewController& controller) {
    std::string texts;
    for (const auto* view : platform::headlessTree(controller).roots()) texts += view->text() + "\n";
    return texts;
  }
};

TEST_F(ViewFactoryTest, TheContainerIsMadeAnewAroundThePageOnShow) {
  content.currentWebView = content.pages[WebViewSwitchType::gitlab];
  const auto first = views.container();
  const auto firstPad = content.scratchpad;
  const auto second = views.container();
  EXPECT_NE(first, second);
  EXPECT_NE(content.scratchpad, firstPad) << "a scratchpad ends with its container";
  EXPECT_EQ(second->rootView.webView->webView, content.currentWebView.webView);
}

TEST_F(ViewFactoryTest, EachPlaceHasAViewOfItsOwn) {
  EXPECT_EQ(views.about()->title, "Velkin");
  for (const auto& place : {views.onboarding(), views.editUrls(), views.searchBar(), views.about(),
                            views.shortcuts(), views.appearance()}) {
    ASSERT_NE(place, nullptr);
    EXPECT_FALSE(textsOf(*place).empty());
  }
}

TEST_F(ViewFactoryTest, AViewCallsBackOnTheDelegateThatItWasHanded) {
  Notes notes;
  const ViewFactory handed({.releaseNotes = &notes}, content);
  const auto host = handed.releaseNotes();
  auto* done = platform::headlessTree(*host).control("Done");
  ASSERT_NE(done, nullptr);
  done->press();
  EXPECT_EQ(notes.done, 1);
}

}  // namespace
}  // namespace velkin
