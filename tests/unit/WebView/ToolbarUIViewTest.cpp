#include "Keyboard/ShortcutLegend.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSHostingController.h"
#include "WebView/ToolbarUIView.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSHostingController;

class ToolbarUIViewTest : public testing::Test {
 protected:
  platform::HeadlessPlatform desktop;
};

TEST_F(ToolbarUIViewTest, HasItsButtonsInOrder) {
  NSHostingController host(ToolbarUIView{});
  auto& tree = platform::headlessTree(host);
  std::vector<std::pair<std::string, std::string>> shown;
  const auto buttons = tree.all<platform::ButtonContent>();
  const auto images = tree.all<platform::ImageContent>();
  ASSERT_EQ(buttons.size(), 6U);
  ASSERT_EQ(images.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i) {
    const auto& help = buttons[i]->element().modifiers.help;
    EXPECT_EQ(help.ends_with(shortcutLegend), i < 5) << "the last one has no shortcut";
    shown.emplace_back(std::get<platform::ImageContent>(images[i]->element().content).name,
                       help.substr(0, help.find('\n')));
  }
  EXPECT_EQ(shown, (std::vector<std::pair<std::string, std::string>>{
                       {"safari", "Open In Browser (⌘O)"},
                       {"house.circle", "Return to Home (⌘⌃R)"},
                       {"arrow.triangle.2.circlepath.circle", "Reload Page (⌘R)"},
                       {"gearshape", "Appearance Setting (⌘⇧S)"},
                       {"x.circle", "Quit (⌘Q)"},
                       {"ellipsis", "Page Settings"}}));
}

TEST_F(ToolbarUIViewTest, WithoutADelegateAButtonDoesNothing) {
  NSHostingController host(ToolbarUIView{nullptr});
  for (auto* button : platform::headlessTree(host).all<platform::ButtonContent>()) button->press();
}

TEST_F(ToolbarUIViewTest, HasItsPaddingAndFillsTheWidthOnItsBackground) {
  const ToolbarUIView toolbar;
  EXPECT_EQ(toolbar.padding, 4);
  EXPECT_EQ(toolbar.iconSize, 12);
  NSHostingController host(toolbar);
  const auto& modifiers = platform::headlessTree(host).roots().at(0)->element().modifiers;
  EXPECT_EQ(modifiers.frame.maxWidth, platform::infinity);
  EXPECT_TRUE(modifiers.background.has_value());
}

}  // namespace
}  // namespace velkin
