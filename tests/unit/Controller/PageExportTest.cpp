#include "Controller/PageExport.h"
#include "Platform/WholeFile.h"
#include "extenstions/FileDescription.h"
#include "unit/Controller/RoomFixture.h"
#include "unit/TemporaryFolder.h"

#include <ctime>
#include <filesystem>

#include <sys/stat.h>

namespace velkin {
namespace {

using platform::NSError;
using platform::NSSavePanel;
using enum WebViewSwitchType;

class PageExportTest : public RoomFixture {
 protected:
  PageExportTest() { show(jira); }

  platform::HeadlessWebView& copy() { return *desktop.webViews.back(); }
  std::vector<std::string>& notices() {
    return dynamic_cast<platform::HeadlessPopover&>(*content.popover).notices;
  }
  auto& panels() { return desktop.openDialogs.savePanels; }
  /// Up to the save panel.
  void print() {
    page(jira).scriptResult = R"("<html>page</html>")";
    exporter.saveAsPdf();
    desktop.queue.drain();
    copy().pdf = std::string("%PDF-1.7 bytes");
    desktop.queue.advance(2.0);
  }
  void archive() {
    page(jira).mhtml = std::string(mhtml);
    exporter.saveAsWebArchive();
    desktop.queue.drain();
  }
  void choose(const std::string& name, std::size_t type = 0) {
    ASSERT_TRUE(desktop.openDialogs.save(NSSavePanel::Choice{(folder.path() / name).string(), type}));
    desktop.queue.drain();
  }
  std::string saved(const std::string& name) const {
    const auto contents = platform::readWholeFile(folder.path() / name, 1 << 20);
    return contents ? contents->bytes : "(none)";
  }

  TemporaryFolder folder;
  PageExport exporter{content};
};

TEST_F(PageExportTest, ThePdfIsOfACopyOfThePageAsItStandsAfterTwoSeconds) {
  page(jira).scriptResult = R"("<html>page</html>")";
  exporter.saveAsPdf();
  EXPECT_EQ(page(jira).scripts.back(), "document.documentElement.outerHTML");
  ASSERT_NE(&copy(), &page(jira));
  EXPECT_EQ(copy().htmlLoads, std::vector<std::string>{"<html>page</html>"});
  copy().pdf = std::string("%PDF-1.7 bytes");
  desktop.queue.advance(1.9);
  EXPECT_TRUE(panels().empty());
  desktop.queue.advance(0.1);
  ASSERT_EQ(panels().size(), 1U);
  const auto& panel = panels().back().asked;
  EXPECT_EQ(panel.title, "Choose Output Location");
  EXPECT_EQ(panel.message, "Choose a location to save the PDF");
  EXPECT_EQ(panel.nameFieldStringValue, PageExport::getFileName("-PDF"));
  ASSERT_EQ(panel.allowedFileTypes.size(), 1U);
  EXPECT_EQ(panel.allowedFileTypes[0].extension, "pdf");
  EXPECT_EQ(panels().back().view, &content.popover->contentViewController()->view());
  choose("page.pdf");
  EXPECT_EQ(saved("page.pdf"), "%PDF-1.7 bytes");
}

TEST_F(PageExportTest, TheNamesKeepTheirWrapper) {
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(fileDescription(1'772'719'620), "03-05-26_1407");
  EXPECT_EQ(PageExport::getFileName("-PDF"),
            "VelkinOptional(\"-PDF\") (" + fileDescription(platform::now()) + ")");
  EXPECT_EQ(PageExport::getFileName(""), "VelkinOptional(\"\") (" + fileDescription(platform::now()) + ")");
}

TEST_F(PageExportTest, TheArchiveComesInTwoForms) {
  archive();
  ASSERT_EQ(panels().size(), 1U);
  const auto& panel = panels().back().asked;
  EXPECT_EQ(panel.message, "Choose a location to save the web archive");
  EXPECT_EQ(panel.nameFieldStringValue, PageExport::getFileName(""));
  ASSERT_EQ(panel.allowedFileTypes.size(), 2U);
  EXPECT_EQ(panel.allowedFileTypes[0].extension, "webarchive");
  EXPECT_EQ(panel.allowedFileTypes[1], (platform::NSFileType{"Web page, MHTML", "mhtml"}));
  choose("page.webarchive");
  EXPECT_NE(saved("page.webarchive").find("WebMainResource"), std::string::npos);
  archive();
  choose("page.mhtml", 1);
  EXPECT_EQ(saved("page.mhtml"), mhtml);
}

TEST_F(PageExportTest, TheReleaseNotesAreSavedAndNotThePageBehindThem) {
  content.forgetHosts();
  content.show(views.releaseNotes());
  content.popover->contentViewController()->view();
  desktop.queue.drain();
  defaults.set(rawValue(releaseNotes), UserDefault::lastVisibleWebView);
  const auto before = page(jira).scripts.size();
  auto& notes = *desktop.webViews.back();
  exporter.saveAsPdf();
  EXPECT_EQ(page(jira).scripts.size(), before);
  EXPECT_EQ(notes.scripts.back(), "document.documentElement.outerHTML");
}

TEST_F(PageExportTest, CancellingLeavesNoFileAndTheNextOneMayCome) {
  print();
  ASSERT_TRUE(desktop.openDialogs.save(std::nullopt));
  desktop.queue.drain();
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  EXPECT_TRUE(notices().empty() || notices().back().find("could not") == std::string::npos);
  print();
  EXPECT_EQ(panels().size(), 1U);
}

TEST_F(PageExportTest, TwiceQuicklyGivesOneDialogue) {
  page(jira).scriptResult = R"("x")";
  exporter.saveAsPdf();
  exporter.saveAsPdf();
  exporter.saveAsWebArchive();
  copy().pdf = std::string("%PDF-");
  desktop.queue.advance(5);
  EXPECT_EQ(panels().size(), 1U);
  exporter.saveAsPdf();
  desktop.queue.advance(5);
  EXPECT_EQ(panels().size(), 1U);
}

TEST_F(PageExportTest, EscapeGivesUpWhatIsUnderWay) {
  EXPECT_FALSE(exporter.cancel());
  page(jira).scriptResult = R"("x")";
  exporter.saveAsPdf();
  copy().pdf = std::string("%PDF-");
  desktop.queue.advance(1);
  EXPECT_EQ(notices().size(), 1U) << "what takes a second is told";
  EXPECT_TRUE(exporter.cancel());
  desktop.queue.advance(5);
  EXPECT_TRUE(panels().empty());
}

TEST_F(PageExportTest, WhatIsNoTextEndsInSilence) {
  for (const auto* json : {"7", "null", "", "{"}) {
    page(jira).scriptResult = json;
    exporter.saveAsPdf();
    desktop.queue.advance(70);
    EXPECT_TRUE(panels().empty());
    EXPECT_TRUE(notices().empty()) << json;
  }
}

TEST_F(PageExportTest, AFailureIsLoggedAndTold) {
  page(jira).scriptResult = R"("x")";
  exporter.saveAsPdf();
  copy().pdf = tl::unexpected(NSError{"x", 1, "no printer"});
  desktop.queue.advance(2);
  EXPECT_EQ(log.back(), "Failed to create PDF: no printer");
  EXPECT_EQ(notices().back(), "The page could not be saved: no printer");
  page(jira).mhtml = tl::unexpected(NSError{"x", 1, "no page"});
  exporter.saveAsWebArchive();
  desktop.queue.drain();
  EXPECT_EQ(log.back(), "Encountered error during webArchive: no page");
}

TEST_F(PageExportTest, AFolderThatHasGoneIsToldAndNoHalfFileIsLeft) {
  print();
  ASSERT_TRUE(
      desktop.openDialogs.save(NSSavePanel::Choice{(folder.path() / "gone" / "page.pdf").string(), 0}));
  desktop.queue.drain();
  EXPECT_TRUE(log.back().starts_with("Encountered error during PDF save: ")) << log.back();
  EXPECT_TRUE(notices().back().starts_with("The page could not be saved: "));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(PageExportTest, APageThatDoesntAnswerIsGivenUpAfterAMinute) {
  exporter.saveAsWebArchive();
  desktop.queue.advance(61);
  EXPECT_EQ(notices().back(), "The page could not be saved: The page does not answer.");
  print();
  EXPECT_EQ(panels().size(), 1U);
}

TEST_F(PageExportTest, ADocumentIsReadableAsTheUsersSettingsHaveIt) {
  const auto mask = umask(022);
  print();
  choose("page.pdf");
  umask(mask);
  struct stat status {};
  ASSERT_EQ(stat((folder.path() / "page.pdf").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

}  // namespace
}  // namespace velkin
