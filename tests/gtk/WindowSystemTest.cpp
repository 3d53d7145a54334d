#include "Platform/Gtk/WaylandWindowSystem.h"
#include "Platform/Gtk/X11Desktop.h"
#include "gtk/GtkFixture.h"

namespace platform {
namespace {

using WindowSystemTest = GtkFixture;

TEST_F(WindowSystemTest, OnTheTestsDisplayAWindowGoesWhereItIsPut) {
  const auto& system = WindowSystem::present();
  ASSERT_TRUE(system.placesWindows());
  show(gtk_label_new("text"));
  std::size_t primary = 0;
  const auto monitors = system.monitors(primary);
  ASSERT_FALSE(monitors.empty());
  const auto area = workArea(monitors[primary], system.struts(), desktopOf(monitors));
  const PixelPoint place{area.x + 40, area.y + 30};
  system.move(window, place);
  EXPECT_TRUE(wait([&] {
    const auto frame = X11Desktop::frame(window);
    return PixelPoint{frame.x, frame.y} == place;
  }));
  EXPECT_TRUE(system.numberOf(window));
}

TEST_F(WindowSystemTest, TheMainScreenComesFirstAndHasItsMonitorsName) {
  const auto& system = WindowSystem::present();
  const auto screens = system.screens();
  ASSERT_FALSE(screens.empty());
  EXPECT_EQ(screens.front().frame.origin, NSPoint{});
  EXPECT_FALSE(system.connectorOf(screens.front()).empty());
  EXPECT_TRUE(system.connectorOf({{{1, 1}, {2, 2}}, {{1, 1}, {2, 2}}}).empty())
      << "there is none at that place";
}

TEST_F(WindowSystemTest, WhereACompositorFindsThePlacesNothingIsKnownAndWishesDoNothing) {
  show(gtk_label_new("text"));
  const auto before = X11Desktop::frame(window);
  const WaylandWindowSystem system;
  EXPECT_FALSE(system.placesWindows());
  std::size_t primary = 7;
  EXPECT_TRUE(system.monitors(primary).empty());
  EXPECT_EQ(primary, 0U);
  EXPECT_TRUE(system.struts().empty());
  EXPECT_FALSE(system.pointer());
  EXPECT_FALSE(system.mainMonitor());
  EXPECT_EQ(system.pixelOfClick({3, 4}), (NSPoint{3, 4}));
  EXPECT_EQ(system.watch({}), nullptr);
  EXPECT_FALSE(system.isActive(window));
  EXPECT_FALSE(system.isActiveWindowOurs());
  system.setPositionHint(window, {before.x + 50, before.y + 50});
  system.move(window, {before.x + 50, before.y + 50});
  system.setIsDialog(window, true);
  system.keepAbove(window);
  EXPECT_EQ(X11Desktop::frame(window), before);
  const auto screens = system.screens();
  ASSERT_EQ(screens.size(), WindowSystem::present().screens().size());
  EXPECT_EQ(screens.front().frame, screens.front().visibleFrame);
}

}  // namespace
}  // namespace platform
