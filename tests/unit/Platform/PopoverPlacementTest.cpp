#include "Platform/PopoverPlacement.h"

#include <array>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::array oneMonitor = {PixelRect{0, 0, 1280, 900}};
constexpr std::array twoMonitors = {PixelRect{0, 0, 1280, 900}, PixelRect{1280, 0, 1920, 1080}};
constexpr std::array topPanel = {Strut{Strut::Edge::top, 28, 0, 1279}};
constexpr std::array bottomPanel = {Strut{Strut::Edge::bottom, 28, 0, 1279}};

TEST(PopoverPlacementTest, StandsUnderAnIconInATopPanel) {
  EXPECT_EQ(placeAtIcon(PixelPoint{640, 14}, 600, 600, oneMonitor, topPanel), (PixelRect{340, 28, 600, 600}));
}

TEST(PopoverPlacementTest, StandsAboveAnIconInABottomPanel) {
  EXPECT_EQ(placeAtIcon(PixelPoint{640, 886}, 600, 600, oneMonitor, bottomPanel),
            (PixelRect{340, 900 - 28 - 600, 600, 600}));
}

TEST(PopoverPlacementTest, StaysOnTheScreenAtItsEdges) {
  EXPECT_EQ(placeAtIcon(PixelPoint{1270, 14}, 600, 600, oneMonitor, topPanel).x, 680);
  EXPECT_EQ(placeAtIcon(PixelPoint{3, 14}, 600, 600, oneMonitor, topPanel).x, 0);
}

TEST(PopoverPlacementTest, IsNoLargerThanTheWorkArea) {
  EXPECT_EQ(placeAtIcon(PixelPoint{640, 14}, 3840, 2160, oneMonitor, topPanel),
            (PixelRect{0, 28, 1280, 872}));
}

TEST(PopoverPlacementTest, WithoutAnAnchorTakesTheTopRightCorner) {
  EXPECT_EQ(placeAtIcon(std::nullopt, 600, 600, oneMonitor, topPanel), (PixelRect{680, 28, 600, 600}));
}

TEST(PopoverPlacementTest, WithoutAnAnchorTakesTheBottomRightCornerWhereTheOnlyPanelIsAtTheBottom) {
  const auto placed = placeAtIcon(std::nullopt, 600, 600, oneMonitor, bottomPanel);
  EXPECT_EQ(placed.x, 680);
  EXPECT_EQ(placed.y + placed.height, oneMonitor.front().height - 28);
  const std::array both = {topPanel.front(), bottomPanel.front()};
  EXPECT_EQ(placeAtIcon(std::nullopt, 600, 600, oneMonitor, both).y, 28);
}

TEST(PopoverPlacementTest, StaysOnTheIconsMonitor) {
  EXPECT_EQ(placeAtIcon(PixelPoint{1300, 10}, 600, 600, twoMonitors, {}).x, 1280);
  EXPECT_EQ(placeAtIcon(PixelPoint{1270, 10}, 600, 600, twoMonitors, {}).x, 680);
}

TEST(PopoverPlacementTest, APointOnNoMonitorBelongsToTheNearest) {
  EXPECT_EQ(monitorAt({-50, 10}, twoMonitors), 0U);
  EXPECT_EQ(monitorAt({5000, 10}, twoMonitors), 1U);
  EXPECT_EQ(monitorAt({100, 2000}, twoMonitors), 0U);
}

TEST(PopoverPlacementTest, APanelOnOneMonitorKeepsNothingClearOnTheOther) {
  const PixelRect desktop{0, 0, 3200, 1080};
  EXPECT_EQ(workArea(twoMonitors[1], topPanel, desktop), twoMonitors[1]);
  const std::array secondsTop = {Strut{Strut::Edge::top, 30, 1280, 3199}};
  EXPECT_EQ(workArea(twoMonitors[1], secondsTop, desktop), (PixelRect{1280, 30, 1920, 1050}));
  EXPECT_EQ(workArea(twoMonitors[0], secondsTop, desktop), twoMonitors[0]);
}

TEST(PopoverPlacementTest, DepthsCountFromTheEdgesOfTheWholeDesktop) {
  const PixelRect desktop{0, 0, 3200, 1080};
  // The first monitor ends 180 above the desktop's lower edge.
  const std::array strut = {Strut{Strut::Edge::bottom, 208, 0, 1279}};
  EXPECT_EQ(workArea(twoMonitors[0], strut, desktop), (PixelRect{0, 0, 1280, 872}));
}

TEST(PopoverPlacementTest, AStrutThatLeavesNothingIsNotBelieved) {
  const std::array absurd = {Strut{Strut::Edge::top, 5000, 0, 1279}, Strut{Strut::Edge::left, 1200, 0, 899},
                             Strut{Strut::Edge::right, 1200, 0, 899}};
  EXPECT_EQ(workArea(oneMonitor[0], absurd, oneMonitor[0]), oneMonitor[0]);
}

TEST(PopoverPlacementTest, AnOrdinaryWindowStandsInTheMiddle) {
  EXPECT_EQ(placeInMiddle(600, 600, oneMonitor, topPanel), (PixelRect{340, 164, 600, 600}));
}

TEST(PopoverPlacementTest, WhatAWindowManagerLeavesToWindowsIsKeptLikeStruts) {
  const std::array area = {PixelRect{0, 32, 1280, 868}};
  const auto struts = strutsAround(area[0], oneMonitor[0], oneMonitor[0]);
  EXPECT_EQ(workArea(oneMonitor[0], struts, oneMonitor[0]), area[0]);
  EXPECT_TRUE(strutsAround(oneMonitor[0], oneMonitor[0], oneMonitor[0]).empty());
}

TEST(PopoverPlacementTest, AnAreaOfOneMonitorLeavesTheOtherAlone) {
  const PixelRect desktop{0, 0, 3200, 1080};
  const std::array areas = {PixelRect{60, 0, 1200, 860}, PixelRect{1350, 30, 1800, 1000}};
  for (std::size_t i = 0; i < areas.size(); ++i) {
    const auto struts = strutsAround(areas[i], twoMonitors[i], desktop);
    EXPECT_EQ(workArea(twoMonitors[i], struts, desktop), areas[i]) << i;
    EXPECT_EQ(workArea(twoMonitors[1 - i], struts, desktop), twoMonitors[1 - i]) << i;
  }
}

TEST(PopoverPlacementTest, AClickThatIsToldInPointsIsFoundByThePointer) {
  EXPECT_EQ(pixelOfClick({1266, 14}, {2531, 29}, 2), (PixelPoint{2532, 28}));
  EXPECT_EQ(pixelOfClick({2531, 29}, {2531, 29}, 2), (PixelPoint{2531, 29}));
  EXPECT_EQ(pixelOfClick({1266, 14}, {40, 700}, 1), (PixelPoint{1266, 14}));
}

TEST(PopoverPlacementTest, APointerOnThePanelKnowsBetterThanAPanelThatAlwaysTellsTheSame) {
  EXPECT_EQ(pixelOfClick({0, 28}, {1250, 12}, 1, true), (PixelPoint{1250, 12}));
  EXPECT_EQ(pixelOfClick({0, 28}, {1250, 700}, 1, false), (PixelPoint{0, 28})) << "by a key: it is elsewhere";
  EXPECT_EQ(pixelOfClick({1266, 14}, {1250, 12}, 1, true), (PixelPoint{1266, 14})) << "near enough";
}

}  // namespace
}  // namespace platform
