#include "Controller/PagePrinting.h"
#include "Helpers/ScreenCaptureHelper.h"
#include "unit/Controller/RoomFixture.h"

#include <algorithm>
#include <memory>

namespace velkin {
namespace {

using platform::NSError;
using platform::NSPrintInfo;
using enum WebViewSwitchType;

class PagePrintingTest : public RoomFixture {
 protected:
  PagePrintingTest() { show(jira); }
  bool hasLogged(const std::string& line) const {
    return std::find(log.begin(), log.end(), line) != log.end();
  }

  PagePrinting printing{content};
};

TEST_F(PagePrintingTest, TheArchiveIsThatOfThePageOnShowOrNothing) {
  std::vector<std::optional<std::string>> told;
  const auto note = [&](std::optional<std::string> archive) { told.push_back(std::move(archive)); };
  page(jira).mhtml = std::string(mhtml);
  printing.getWebArchive(note);
  desktop.queue.drain();
  page(jira).mhtml = tl::unexpected(NSError{"x", 1, "gone"});
  printing.getWebArchive(note);
  desktop.queue.drain();
  ASSERT_EQ(told.size(), 2U);
  ASSERT_TRUE(told[0].has_value());
  EXPECT_NE(told[0]->find("WebMainResource"), std::string::npos);
  EXPECT_EQ(told[1], std::nullopt);
}

TEST_F(PagePrintingTest, APageThatCanBeArchivedGoesToThePrintDialogueAsADocument) {
  page(jira).mhtml = std::string(mhtml);
  page(jira).pdf = std::string("%PDF-1.7");
  printing.printWebViewFromArchive();
  desktop.queue.drain();
  ASSERT_EQ(desktop.services.printed.size(), 1U);
  EXPECT_EQ(desktop.services.printed[0].first, "%PDF-1.7");
  EXPECT_EQ(desktop.services.printed[0].second.leftMargin, NSPrintInfo::shared().leftMargin);
}

TEST_F(PagePrintingTest, WhatFailsOnTheWayToTheDialogueIsInTheLog) {
  page(jira).mhtml = tl::unexpected(NSError{"x", 1, "no page"});
  printing.printWebViewFromArchive();
  desktop.queue.drain();
  EXPECT_EQ(log.back(), "Encountered error during webArchive: no page");
  page(jira).pdf = tl::unexpected(NSError{"x", 1, "no printer"});
  printing.printWebViewContent(page(jira));
  desktop.queue.drain();
  EXPECT_EQ(log.back(), "Failed to create PDF: no printer");
  EXPECT_TRUE(desktop.services.printed.empty());
  page(jira).pdf = std::string("%PDF-");
  desktop.services.printError = NSError{"x", 1, "no paper"};
  printing.printWebViewContent(page(jira));
  desktop.queue.drain();
  EXPECT_EQ(log.back(), "Printing failed: no paper");
}

TEST_F(PagePrintingTest, TheTwoPrintTasksComeOneAfterTheOther) {
  printing.printUsingPdfCunctions();
  auto& engine = page(jira);
  ASSERT_EQ(engine.printOperations.size(), 1U);
  const auto& info = engine.printOperations[0];
  EXPECT_EQ(info.leftMargin, 10);
  EXPECT_EQ(info.rightMargin, 10);
  EXPECT_EQ(info.topMargin, 10);
  EXPECT_EQ(info.bottomMargin, 10);
  EXPECT_EQ(info.scalingFactor, 1);
  EXPECT_EQ(info.horizontalPagination, NSPrintInfo::Pagination::automatic);
  EXPECT_EQ(info.verticalPagination, NSPrintInfo::Pagination::automatic);
  EXPECT_TRUE(info.isHorizontallyCentered && info.isVerticallyCentered);
  EXPECT_NE(log.back().find(" wkBounds"), std::string::npos);
  engine.printAnswers[0]();
  ASSERT_EQ(engine.printOperations.size(), 2U);
  engine.printAnswers[1]();
  EXPECT_EQ(engine.printOperations.size(), 2U);
}

TEST_F(PagePrintingTest, AnAnswerAfterTheControllerHasGoneIsNoHarm) {
  auto other = std::make_unique<PagePrinting>(content);
  other->printUsingPdfCunctions();
  other.reset();
  page(jira).printAnswers[0]();
  EXPECT_EQ(page(jira).printOperations.size(), 1U);
}

TEST_F(PagePrintingTest, APictureIsTakenOfNoWindowInParticularAndOpened) {
  desktop.services.windows = {{"Other", 4, 7}, {"Velkin", 12, 99}, {"Velkin", 13, 100}};
  printing.captureScreen();
  EXPECT_EQ(desktop.services.activated, std::vector<int>{12});
  EXPECT_NE(log.back().find("captureScreen() winId 99"), std::string::npos) << log.back();
  ASSERT_EQ(desktop.services.captures.size(), 1U);
  EXPECT_TRUE(desktop.services.captures[0].isInteractive);
  EXPECT_EQ(desktop.services.captures[0].windowID, std::nullopt);
  desktop.queue.drain();
  EXPECT_TRUE(hasLogged("Screenshot saved to: system default location)"));
  ASSERT_EQ(desktop.workspace.opened.size(), 1U);
  EXPECT_EQ(desktop.workspace.opened[0].absoluteString(), "file:///pictures/one.png");
}

TEST_F(PagePrintingTest, WithNoWindowThePictureIsTakenAllTheSame) {
  desktop.services.picture = tl::unexpected(NSError{"x", 1, "The user said no"});
  printing.captureScreen();
  desktop.queue.drain();
  EXPECT_TRUE(desktop.services.activated.empty());
  EXPECT_EQ(desktop.services.captures.size(), 1U);
  EXPECT_EQ(log.back(), "No screenshot: The user said no");
  EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(PagePrintingTest, AWindowIsFoundByItsProgramsNameOrIdentifier) {
  const ScreenCaptureHelper helper;
  EXPECT_EQ(helper.getWindowID(), std::nullopt);
  desktop.services.windows = {{"Velkin", 12, 99}};
  EXPECT_EQ(helper.getWindowID("velkin"), 99);
  EXPECT_EQ(helper.getWindowID(), 99);
  EXPECT_EQ(helper.getWindowID("Other"), std::nullopt);
  helper.captureScreen(99);
  EXPECT_EQ(desktop.services.captures.back().windowID, 99);
}

}  // namespace
}  // namespace velkin
