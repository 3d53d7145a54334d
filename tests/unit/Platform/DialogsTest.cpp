#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSAlert.h"
#include "Platform/NSSavePanel.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Role = NSAlert::Button::Role;

class DialogsTest : public testing::Test {
 protected:
  HeadlessPlatform desktop;
};

TEST_F(DialogsTest, AnAlertIsAnsweredInALaterTurn) {
  std::optional<std::size_t> chosen;
  const NSAlert alert{.messageText = "Import New Settings?",
                      .informativeText = {},
                      .buttons = {{"Cancel", Role::cancel}, {"Import", Role::confirm}}};
  alert.beginSheetModal(nullptr, [&](std::size_t button) { chosen = button; });
  ASSERT_EQ(desktop.openDialogs.alerts.size(), 1U);
  EXPECT_FALSE(desktop.openDialogs.press("Elsewhere"));
  EXPECT_TRUE(desktop.openDialogs.press("Import"));
  EXPECT_FALSE(chosen.has_value());
  desktop.queue.drain();
  EXPECT_EQ(chosen, 1U);
  EXPECT_TRUE(desktop.openDialogs.alerts.empty());
}

TEST_F(DialogsTest, EscapeIsTheButtonOfThatRoleElseTheLastOne) {
  EXPECT_EQ((NSAlert{"", "", {{"No", Role::cancel}, {"Yes"}}}).cancelButton(), 0U);
  EXPECT_EQ((NSAlert{"", "", {{"Yes"}, {"No"}}}).cancelButton(), 1U);
  EXPECT_EQ((NSAlert{}).cancelButton(), 0U);
}

TEST_F(DialogsTest, ASavePanelGivesTheTypesExtensionToANameWithoutOne) {
  NSSavePanel panel;
  panel.allowedFileTypes = {{"Web archive", "webarchive"}, {"Web page, MHTML", "mhtml"}};
  EXPECT_EQ(panel.withExtension("/tmp/page", 1), "/tmp/page.mhtml");
  EXPECT_EQ(panel.withExtension("/tmp/page.webarchive", 1), "/tmp/page.webarchive");
  EXPECT_EQ(panel.withExtension("/tmp/page.txt", 0), "/tmp/page.txt.webarchive");
  EXPECT_EQ(panel.withExtension("/tmp/page", 7), "/tmp/page");
  EXPECT_EQ(NSSavePanel{}.withExtension("/tmp/page", 0), "/tmp/page");
}

TEST_F(DialogsTest, PanelsGiveAPathOrNothing) {
  std::optional<NSSavePanel::Choice> saved;
  std::optional<std::string> opened = "before";
  NSSavePanel{}.beginSheetModal(nullptr, [&](auto choice) { saved = choice; });
  NSOpenPanel{}.beginSheetModal(nullptr, [&](auto path) { opened = path; });
  EXPECT_TRUE(desktop.openDialogs.save(NSSavePanel::Choice{"/tmp/a.pdf", 0}));
  EXPECT_TRUE(desktop.openDialogs.open(std::nullopt));
  desktop.queue.drain();
  ASSERT_TRUE(saved.has_value());
  EXPECT_EQ(saved->path, "/tmp/a.pdf");
  EXPECT_FALSE(opened.has_value());
}

}  // namespace
}  // namespace platform
