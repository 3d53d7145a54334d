// bench-scratchpad [--rounds N]: from a key press to the painted letter, in the scratchpad with its preview
// and in a bare window with the toolkit's text view, both with the same text; and what the journal takes of
// the main loop for a key. Runs on a desktop with a tray; ./dev bench scratchpad makes one.
#include "Desktop.h"
#include "Markdown/ScratchpadJournal.h"
#include "Observer.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Programs.h"
#include "Timing.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <X11/keysym.h>

namespace {

using namespace bench;

constexpr unsigned long white = 0xffffff;
constexpr int warmUps = 3;
constexpr double pause = 0.25;
constexpr int margin = 8;
/// The program's editor stands in a padding of its own.
constexpr int rightOfTheCursor = 3;

/// An empty line, on which the letters come, and paragraphs.
std::string textOfLength(std::size_t length) {
  std::string text = "\n\n";
  while (text.size() < length) {
    text +=
        "Some *words* in a paragraph that is long enough to be wrapped, with `code` and a "
        "[link](address).\n\n";
  }
  return text;
}

/// Where a letter at the start of the first line leaves its ink, and the cursor none.
std::vector<Point> firstLetter(const Area& editor) {
  std::vector<Point> points;
  for (int x = 0; x < 7; ++x) {
    for (int y = 4; y < 14; ++y)
      points.push_back({editor.left + margin + rightOfTheCursor + x, editor.top + margin + y});
  }
  return points;
}

void measure(Observer& screen, const Area& editor, int rounds, Figures& figures) {
  const auto points = firstLetter(editor);
  for (int i = 0; i < warmUps + rounds; ++i) {
    if (!waitFor([&] { return screen.shows(points, white); })) refuse("the first line isn't empty");
    const auto time =
        screen.timeFrom([&] { screen.holdKey(XK_m); }, [&] { return !screen.shows(points, white); });
    screen.releaseKey(XK_m);
    if (!time) refuse("a key press brought no letter");
    if (i >= warmUps) figures.add(*time);
    rest(pause);
    screen.tapKey(XK_BackSpace);
    rest(pause);
  }
}

Area waitForEditor(Observer& screen) {
  if (!waitFor([&] { return screen.find(white).has_value(); })) refuse("no editor came");
  rest(2);
  const auto area = screen.find(white);
  if (!area) refuse("the editor went");
  return *area;
}

void compare(Observer& screen, const char* what, std::size_t length, int rounds) {
  const ScratchFolder folder;
  const auto text = textOfLength(length);
  const auto file = folder.path / "text";
  std::ofstream(file, std::ios::binary) << text;
  Figures baseline;
  Figures ours;
  {
    const Process window("baseline-text", {"300", "500", file.string()}, folder.path / "baseline");
    const auto editor = waitForEditor(screen);
    screen.movePointer({editor.left + 100, editor.top + 100});
    measure(screen, editor, rounds, baseline);
  }
  {
    const auto home = folder.path / "home";
    writeSettings(home, "<key>hemingwayEnabled</key><true/>");
    platform::HeadlessPlatform desktop;
    desktop.dataFolder = home / ".local" / "share" / "velkin";
    std::filesystem::create_directories(desktop.dataFolder);
    velkin::ScratchpadJournalWriter(velkin::ScratchpadJournal::ofUser()).changed("", text);
    const Process velkin("velkin-e2e", {}, home);
    rest(3);
    clickIcon(velkin.pid);
    rest(3);
    screen.holdKey(XK_Control_L);
    screen.tapKey(XK_m);
    screen.releaseKey(XK_Control_L);
    rest(2);
    // The editor has the keyboard, and the offer is the link before it.
    for (int i = 0; i < 2; ++i) {
      screen.holdKey(XK_Shift_L);
      screen.tapKey(XK_Tab);
      screen.releaseKey(XK_Shift_L);
      rest(0.2);
    }
    screen.tapKey(XK_Return);
    rest(2);
    screen.holdKey(XK_Control_L);
    screen.tapKey(XK_Home);
    screen.releaseKey(XK_Control_L);
    rest(1);
    measure(screen, waitForEditor(screen), rounds, ours);
  }
  printRow(what, ours.median(), baseline.median(), 1.5);
}

void measureJournal() {
  constexpr int keys = 2000;
  const ScratchFolder folder;
  platform::HeadlessPlatform desktop;
  desktop.dataFolder = folder.path;
  velkin::ScratchpadJournalWriter writer(velkin::ScratchpadJournal::ofUser());
  auto text = textOfLength(100000);
  if (!writer.changed("", text)) refuse("the journal can't be written");
  Figures figures;
  for (int i = 0; i < keys; ++i) {
    auto next = text;
    next.insert(next.size() / 2, 1, 'x');
    const auto start = Clock::now();
    writer.changed(text, next);
    figures.add(millisecondsSince(start));
    text = std::move(next);
  }
  std::printf("\njournal, a key at 100 kB: median %.4f ms, 90th percentile %.4f ms, goal 0.2 ms\n",
              figures.median(), figures.p90());
}

}  // namespace

int main(int argc, char** argv) {
  int rounds = 20;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) rounds = std::atoi(argv[i + 1]);
  }
  measureJournal();
  const ServicePages pages;
  Observer screen;
  printRowHead();
  compare(screen, "key to letter, 1 kB", 1000, rounds);
  compare(screen, "key to letter, 100 kB", 100000, rounds);
  compare(screen, "key to letter, 1 MB", 1000000, rounds);
}
