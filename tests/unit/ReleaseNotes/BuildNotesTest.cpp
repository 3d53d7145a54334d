#include "ReleaseNotes/BuildNotes.h"
#include "gtest/gtest.h"

#include <algorithm>

namespace velkin {
namespace {

TEST(BuildNotesTest, everyBuildFromTheRunningOneDownHasNotes) {
  int build = currentBuildNotes().build;
  EXPECT_EQ(build, VELKIN_BUILD_NUMBER) << "a new build needs its notes";
  for (const auto& notes : earlierBuildNotes()) {
    EXPECT_EQ(notes.build, --build);
    EXPECT_FALSE(notes.features.empty() && notes.fixes.empty()) << build;
  }
  EXPECT_EQ(build, 6);
}

TEST(BuildNotesTest, someBuildsHaveNoFixes) {
  EXPECT_TRUE(std::any_of(earlierBuildNotes().begin(), earlierBuildNotes().end(),
                          [](const auto& notes) { return notes.fixes.empty(); }));
}

TEST(BuildNotesTest, everyEntryIsOneLineThatEndsWithAStop) {
  const auto check = [](const BuildNotes& notes) {
    for (const auto list : {notes.features, notes.fixes}) {
      for (const auto entry : list) {
        EXPECT_EQ(entry.find('\n'), entry.npos) << entry;
        EXPECT_TRUE(entry.ends_with('.')) << entry;
      }
    }
  };
  check(currentBuildNotes());
  for (const auto& notes : earlierBuildNotes()) check(notes);
}

}  // namespace
}  // namespace velkin
