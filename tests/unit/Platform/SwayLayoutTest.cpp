#include "Platform/SwayLayout.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

std::string rect(int x, int y, int width, int height) {
  return R"("rect":{"x":)" + std::to_string(x) + R"(,"y":)" + std::to_string(y) + R"(,"width":)" +
         std::to_string(width) + R"(,"height":)" + std::to_string(height) + "}";
}

const std::string oneOutput =
    R"([{"name":"A","active":true,"focused":true,"scale":1.0,)" + rect(0, 0, 1280, 900) + "}]";
const std::string barOnTop = R"([{"output":"A","visible":true,)" + rect(0, 30, 1280, 870) + "}]";
const std::string barBelow = R"([{"output":"A","visible":true,)" + rect(0, 0, 1280, 870) + "}]";

SwayLayout layoutOf(const std::string& outputs, const std::string& workspaces) {
  return SwayLayout::read(outputs, workspaces).value();
}

PixelRect roomOf(const SwayLayout& layout, std::size_t monitor) {
  return workArea(layout.monitors[monitor], layout.struts, desktopOf(layout.monitors));
}

TEST(SwayLayoutTest, TheRoomIsThatOfTheWorkspaceOnShow) {
  EXPECT_EQ(roomOf(layoutOf(oneOutput, barOnTop), 0), (PixelRect{0, 30, 1280, 870}));
  EXPECT_EQ(roomOf(layoutOf(oneOutput, barBelow), 0), (PixelRect{0, 0, 1280, 870}));
  const auto hidden = R"([{"output":"A","visible":false,)" + rect(9, 9, 9, 9) + "}," + barOnTop.substr(1);
  EXPECT_EQ(roomOf(layoutOf(oneOutput, hidden), 0), (PixelRect{0, 30, 1280, 870}));
  EXPECT_EQ(roomOf(layoutOf(oneOutput, "[]"), 0), (PixelRect{0, 0, 1280, 900}));
}

TEST(SwayLayoutTest, EachScreenHasItsOwnRoomAndOneIsTheUsers) {
  const auto outputs = R"([{"name":"off","active":false,)" + rect(0, 0, 0, 0) +
                       R"(},{"name":"A","active":true,)" + rect(0, 0, 1280, 900) +
                       R"(},{"name":"B","active":true,"focused":true,)" + rect(1280, 0, 960, 540) + "}]";
  const auto workspaces =
      R"([{"output":"B","visible":true,)" + rect(1300, 20, 920, 500) + "}," + barOnTop.substr(1);
  const auto layout = layoutOf(outputs, workspaces);
  EXPECT_EQ(layout.monitors.size(), 2U);
  EXPECT_EQ(layout.focused, 1U);
  EXPECT_EQ(roomOf(layout, 0), (PixelRect{0, 30, 1280, 870}));
  // The gaps at its edges are kept clear as a bar is.
  EXPECT_EQ(roomOf(layout, 1), (PixelRect{1300, 20, 920, 500}));
}

TEST(SwayLayoutTest, APointOnABarCanBeTheIcons) {
  const auto layout = layoutOf(oneOutput, barOnTop);
  EXPECT_TRUE(layout.canBeIcon({1270, 14}));
  EXPECT_TRUE(layout.canBeIcon({700, 14}));
  EXPECT_FALSE(layout.canBeIcon({1270, 300})) << "there is no bar";
  EXPECT_FALSE(layout.canBeIcon({1290, 14})) << "there is no screen";
  EXPECT_FALSE(layout.canBeIcon({11, 15})) << "it is counted from the icon's corner";
  const auto below = layoutOf(oneOutput, barBelow);
  EXPECT_TRUE(below.canBeIcon({11, 885})) << "the icon's own corner is at the other end";
  EXPECT_FALSE(below.canBeIcon({11, 15}));
}

TEST(SwayLayoutTest, AWindowBelowThePointerTellsWhereThatIs) {
  const auto layout = layoutOf(oneOutput, barOnTop);
  EXPECT_EQ(layout.iconBelow({300, 150, 600, 600}), (PixelPoint{600, 450}));
  // Kept on the screen, at one edge or two.
  EXPECT_EQ(layout.iconBelow({680, 0, 600, 600}), (PixelPoint{1279, 0}));
  EXPECT_EQ(layout.iconBelow({0, 300, 600, 600}), (PixelPoint{0, 899}));
  EXPECT_EQ(layout.iconBelow({100, 0, 600, 600}), (PixelPoint{400, 0}));
  // As wide as the screen: it tells nothing of that direction.
  EXPECT_EQ(layout.iconBelow({0, 0, 1280, 600}), (PixelPoint{640, 0}));
}

TEST(SwayLayoutTest, AnswersThatTellOfNoScreenGiveNothing) {
  for (const std::string outputs :
       {"", "{", "null", "[]", "[1,[],{}]", R"([{"active":true}])", R"([{"active":true,"rect":[]}])",
        R"([{"active":true,"rect":{"x":0,"y":0,"width":0,"height":900}}])",
        R"([{"active":true,"rect":{"x":0,"y":0,"width":-5,"height":900}}])",
        R"([{"active":true,"rect":{"x":0,"y":0,"width":18446744073709551615,"height":900}}])",
        R"([{"active":true,"rect":{"x":-9223372036854775808,"y":0,"width":9,"height":900}}])",
        R"([{"active":true,"rect":{"x":0.5,"y":"0","width":9,"height":900}}])", "\xff\xfe"}) {
    EXPECT_FALSE(SwayLayout::read(outputs, barOnTop)) << outputs;
  }
  EXPECT_FALSE(SwayLayout::read(oneOutput, "{}"));
  EXPECT_FALSE(SwayLayout::read(oneOutput, ""));
}

TEST(SwayLayoutTest, ARoomThatIsNotOnItsScreenIsNotTaken) {
  const auto elsewhere = R"([{"output":"A","visible":true,)" + rect(5000, 0, 100, 100) + "}]";
  EXPECT_EQ(roomOf(layoutOf(oneOutput, elsewhere), 0), (PixelRect{0, 0, 1280, 900}));
  const auto larger = R"([{"output":"A","visible":true,)" + rect(-50, 30, 3000, 3000) + "}]";
  EXPECT_EQ(roomOf(layoutOf(oneOutput, larger), 0), (PixelRect{0, 30, 1280, 870}));
  const auto odd = R"([7,{"visible":true,"output":3,"rect":7},{"visible":"yes"}])";
  EXPECT_EQ(roomOf(layoutOf(oneOutput, odd), 0), (PixelRect{0, 0, 1280, 900}));
}

TEST(SwayLayoutTest, ACommandIsDoneIfAllItsPartsAre) {
  EXPECT_EQ(outcomeOf(R"([{"success":true},{"success":true}])"), SwayOutcome::done);
  EXPECT_EQ(outcomeOf(R"([{"success":false,"error":"No matching node."}])"), SwayOutcome::noSuchWindow);
  EXPECT_EQ(outcomeOf(R"([{"success":true},{"success":false,"error":"Only floating"}])"),
            SwayOutcome::refused);
  for (const std::string answer : {"", "[]", "{}", "[7]", "[{}]", R"([{"success":"true"}])"}) {
    EXPECT_EQ(outcomeOf(answer), SwayOutcome::refused) << answer;
  }
}

TEST(SwayLayoutTest, AWindowIsFoundInTheTreeByProcessAndTitle) {
  const auto tree = R"({"nodes":[{"pid":7,"name":"Velkin",)" + rect(1, 2, 3, 4) +
                    R"(},{"nodes":[],"floating_nodes":[{"pid":8,"name":"Velkin - Menu",)" + rect(5, 6, 7, 8) +
                    R"(},{"pid":8,"name":"Velkin",)" + rect(9, 10, 11, 12) + "}]}]}";
  EXPECT_EQ(windowInTree(tree, 8, "Velkin"), (PixelRect{9, 10, 11, 12}));
  EXPECT_EQ(windowInTree(tree, 7, "Velkin"), (PixelRect{1, 2, 3, 4}));
  EXPECT_FALSE(windowInTree(tree, 9, "Velkin"));
  EXPECT_FALSE(windowInTree(R"({"nodes":7,"floating_nodes":[8,null]})", 8, "Velkin"));
  EXPECT_FALSE(windowInTree("no tree", 8, "Velkin"));
}

TEST(SwayLayoutTest, ATreeMayBeAsDeepAsItLikes) {
  constexpr int depth = 20000;
  std::string tree;
  for (int i = 0; i < depth; ++i) tree += R"({"nodes":[)";
  tree += R"({"pid":8,"name":"Velkin",)" + rect(1, 2, 3, 4) + "}";
  for (int i = 0; i < depth; ++i) tree += "]}";
  EXPECT_EQ(windowInTree(tree, 8, "Velkin"), (PixelRect{1, 2, 3, 4}));
}

TEST(SwayLayoutTest, CommandsAreForOneWindow) {
  EXPECT_EQ(criteriaFor(4194308, 8, "Velkin"), "[id=4194308]");
  EXPECT_EQ(criteriaFor(std::nullopt, 8, "Velkin - Menu"), "[pid=8 title=\"^Velkin - Menu$\"]");
  for (const std::string title : {"", ".*", "a\"] kill", "Vélkin"}) {
    EXPECT_FALSE(criteriaFor(std::nullopt, 8, title)) << title;
  }
}

}  // namespace
}  // namespace platform
