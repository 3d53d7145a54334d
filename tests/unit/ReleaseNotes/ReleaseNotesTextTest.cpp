#include "ReleaseNotes/BuildNotes.h"
#include "ReleaseNotes/ReleaseNotesText.h"
#include "gtest/gtest.h"

#include <array>

namespace velkin {
namespace {

constexpr std::array<std::string_view, 2> two = {"Area: One.", "Area: a < b & c."};

TEST(ReleaseNotesTextTest, aSectionIsItsTitleAndAListElementForEachItem) {
  EXPECT_EQ(getBulletedHtmlSection("Title", two),
            "<h3>Title:</h3>\n<ul>\n  <li>Area: One.</li><li>Area: a &lt; b &amp; c.</li>\n</ul>");
}

TEST(ReleaseNotesTextTest, anEmptyListHasNoSection) { EXPECT_EQ(getBulletedHtmlSection("Title", {}), ""); }

TEST(ReleaseNotesTextTest, theTwoTitles) {
  EXPECT_TRUE(getReleaseFeatures(two).starts_with("<h3>✨Features:</h3>\n<ul>"));
  EXPECT_TRUE(getReleaseFixes(two).starts_with("<h3>🛠Fixes:</h3>\n<ul>"));
}

TEST(ReleaseNotesTextTest, aBuildsSection) {
  EXPECT_EQ(getReleaseNotes("1.2", two, two),
            "<h1><br></h1>\n<h2>1.2:</h2>\n" + getReleaseFeatures(two) + "\n" + getReleaseFixes(two));
}

TEST(ReleaseNotesTextTest, aBuildWithNoFixesHasNoFixesBlock) {
  EXPECT_EQ(getReleaseNotes("1.2", two, {}),
            "<h1><br></h1>\n<h2>1.2:</h2>\n" + getReleaseFeatures(two) + "\n");
  EXPECT_EQ(getReleaseNotes("1.2", two, {}).find("🛠"), std::string::npos);
}

TEST(ReleaseNotesTextTest, theRunningBuildIsNamedByVersionAndBuildNumber) {
  EXPECT_TRUE(releaseNotesText("1.0.0", "23").starts_with("<h1><br></h1>\n<h2>1.0.0 (23)  :-):</h2>\n"));
  EXPECT_EQ(releaseNotesText("1.0.0", "23"),
            getReleaseNotes("1.0.0 (23)  :-)", currentBuildNotes().features, currentBuildNotes().fixes));
}

TEST(ReleaseNotesTextTest, allBuildsFollowTheRunningOneInDescendingOrder) {
  const auto text = debugNotesText("1.0.0", "23");
  ASSERT_TRUE(text.starts_with(releaseNotesText("1.0.0", "23")));
  auto at = releaseNotesText("1.0.0", "23").size();
  for (int build = 22; build >= 6; --build) {
    const auto next = text.find("<h2>Build " + std::to_string(build) + ":</h2>");
    ASSERT_NE(next, text.npos) << build;
    EXPECT_GE(next, at);
    at = next;
  }
}

TEST(ReleaseNotesTextTest, thePageIsDarkOrLight) {
  const std::string_view opening = "<html><head><body><h1>Release Notes</h1>";
  EXPECT_TRUE(releaseNotesHead(true).starts_with(opening));
  EXPECT_TRUE(releaseNotesHead(false).starts_with(opening));
  EXPECT_NE(releaseNotesHead(true).find("background-color: #333344"), std::string_view::npos);
  EXPECT_NE(releaseNotesHead(true).find("color: lightgray"), std::string_view::npos);
  EXPECT_NE(releaseNotesHead(false).find("background-color: #DDDDEE"), std::string_view::npos);
  EXPECT_NE(releaseNotesHead(false).find("color: #333344"), std::string_view::npos);
}

TEST(ReleaseNotesTextTest, thePageShowsAllBuildsOnlyWithTheAdditionalViews) {
  for (const bool isDark : {true, false}) {
    const std::string head(releaseNotesHead(isDark));
    EXPECT_EQ(releaseNotesPage("1", "2", isDark, false),
              head + releaseNotesText("1", "2") + "</body></html>");
    EXPECT_EQ(releaseNotesPage("1", "2", isDark, true), head + debugNotesText("1", "2") + "</body></html>");
  }
}

}  // namespace
}  // namespace velkin
