// bench-panels [--rounds N] [--openings N]: from the click on the menu's "Appearance..." to the panel's first
// complete picture, beside a bare window with as many widgets and one web view; and what openings leave
// behind. Runs on a desktop with a tray; ./dev bench panels makes one.
#include "Desktop.h"
#include "Observer.h"
#include "Programs.h"
#include "Timing.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include <X11/keysym.h>

namespace {

using namespace bench;

struct Plan {
  int rounds = 15;
  int openings = 20;
};
constexpr int warmUps = 3;
constexpr double goalOfTime = 3;
/// MiB.
constexpr double goalOfMemory = 5;

/// Seconds in which nothing may be painted, for a picture that counts as complete.
constexpr double quiet = 1.5;

/// What is on the area once nothing changes any more.
std::string completePicture(const Observer& screen, const Area& area) {
  auto last = screen.picture(area);
  for (;;) {
    rest(quiet);
    auto now = screen.picture(area);
    if (now == last) return now;
    last = std::move(now);
  }
}

/// Points. The window manager draws the lower edge of a window in one of two ways, as it comes.
constexpr int frame = 12;

/// The smallest rectangle in which the screen isn't as it was, without the frame of the window there.
Area changedArea(const Observer& screen, const std::string& before) {
  const Area all = screen.screen();
  const auto now = screen.picture(all);
  const auto width = static_cast<std::size_t>(all.width());
  const auto bytes = now.size() / width / static_cast<std::size_t>(all.height());
  Area found{all.right, all.bottom, 0, 0};
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] == before[i]) continue;
    const int x = static_cast<int>(i / bytes % width);
    const int y = static_cast<int>(i / bytes / width);
    found = {std::min(found.left, x), std::min(found.top, y), std::max(found.right, x),
             std::max(found.bottom, y)};
  }
  return {found.left + frame, found.top + frame, found.right - frame, found.bottom - frame};
}

std::string menuName(pid_t velkin) { return "org.kde.StatusNotifierItem-" + std::to_string(velkin) + "-1"; }
constexpr const char* menuPath = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

/// The number of the entry with this label in the icon's menu.
int menuItem(pid_t velkin, const std::string& label) {
  const char* properties[] = {"label", nullptr};
  GVariant* layout = g_dbus_connection_call_sync(
      sessionBus(), menuName(velkin).c_str(), menuPath, menuInterface, "GetLayout",
      g_variant_new("(ii^as)", 0, 1, properties), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  if (layout == nullptr) refuse("the icon has no menu");
  GVariantIter* items = nullptr;
  g_variant_get(layout, "(u(ia{sv}av))", nullptr, nullptr, nullptr, &items);
  int found = -1;
  GVariant* item = nullptr;
  while (g_variant_iter_next(items, "v", &item) != FALSE) {
    gint32 number = 0;
    GVariant* told = nullptr;
    g_variant_get(item, "(i@a{sv}av)", &number, &told, nullptr);
    const char* text = nullptr;
    if (g_variant_lookup(told, "label", "&s", &text) != FALSE && label == text) found = number;
    g_variant_unref(told);
    g_variant_unref(item);
  }
  g_variant_iter_free(items);
  g_variant_unref(layout);
  if (found < 0) refuse("the menu has no such entry");
  return found;
}

/// A panel that can be opened and closed any number of times, always at the same place.
struct Panel {
  std::function<void()> open;
  std::function<void()> close;
};

/// Milliseconds from each opening to the picture that the panel had once nothing changed any more.
Figures timesOf(Observer& screen, const Panel& panel, int rounds) {
  Figures figures;
  const auto empty = completePicture(screen, screen.screen());
  Area area;
  std::string before;
  std::string whole;
  for (int i = 0; i < warmUps; ++i) {
    panel.open();
    if (!waitFor([&] { return screen.picture(screen.screen()) != empty; })) refuse("the panel did not come");
    completePicture(screen, screen.screen());
    area = changedArea(screen, empty);
    whole = screen.picture(area);
    panel.close();
    if (!waitFor([&] { return screen.picture(screen.screen()) == empty; }))
      refuse("the panel leaves something on the screen");
    before = screen.picture(area);
    rest(quiet);
  }
  for (int i = 0; i < rounds; ++i) {
    const auto time = screen.timeFrom(panel.open, [&] { return screen.picture(area) == whole; });
    if (!time) refuse("the panel's picture differs from one opening to the next");
    figures.add(*time);
    rest(0.3);
    panel.close();
    if (!waitFor([&] { return screen.picture(area) == before; })) refuse("the panel does not go");
    rest(0.3);
  }
  return figures;
}

/// MiB that many openings have left in the process.
double memoryLeft(const Observer& screen, const Panel& panel, pid_t process, int openings) {
  const auto settled = [&] {
    completePicture(screen, screen.screen());
    return ownMemory(process);
  };
  const double before = settled();
  for (int i = 0; i < openings; ++i) {
    panel.open();
    rest(0.7);
    panel.close();
    rest(0.3);
  }
  return settled() - before;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) plan.rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--openings") == 0) plan.openings = std::atoi(argv[i + 1]);
  }
  Observer screen;
  const ServicePages pages;
  const ScratchFolder folder;
  // Where no window comes.
  screen.movePointer({5, 800});

  Figures baseline;
  {
    const Process window("baseline-panel", {}, folder.path / "baseline");
    rest(3);
    const auto toggle = [&window] { kill(window.pid, SIGHUP); };
    baseline = timesOf(screen, {toggle, toggle}, plan.rounds);
  }

  const auto home = folder.path / "home";
  writeSettings(home);
  const Process velkin("velkin-e2e", {}, home);
  rest(3);
  const int entry = menuItem(velkin.pid, "Appearance...");
  const Panel panel{[&] {
                      callMethod(menuName(velkin.pid), menuPath, menuInterface, "Event",
                                 g_variant_new("(isvu)", entry, "clicked", g_variant_new_int32(0), 0U));
                    },
                    [&screen] {
                      screen.holdKey(XK_Alt_L);
                      screen.tapKey(XK_F4);
                      screen.releaseKey(XK_Alt_L);
                    }};
  const auto ours = timesOf(screen, panel, plan.rounds);
  const int processes = countTree(velkin.pid);
  const double left = memoryLeft(screen, panel, velkin.pid, plan.openings);

  printRowHead();
  printRow("menu to the panel's complete picture, ms", ours.median(), baseline.median(), goalOfTime);
  std::printf("%d openings left %.2f MiB (goal %.0f) %s, and %d processes (goal 0) %s\n", plan.openings, left,
              goalOfMemory, left <= goalOfMemory ? "reached" : "MISSED", countTree(velkin.pid) - processes,
              countTree(velkin.pid) <= processes ? "reached" : "MISSED");
}
