// bench-scratchpad [--rounds N] [--keys N] [--only letter|preview|memory]: from a key press to the painted
// letter, in the scratchpad with its preview and in a bare window with the toolkit's text view, both with the
// same text; from a key press to the painted preview, beside a bare web view that loads the same page; what
// thousands of keys leave of memory; and what the journal takes of the main loop for a key. Runs on a desktop
// with a tray; ./dev bench scratchpad makes one.
#include "Components/MarkdownHtmlHelper.h"
#include "Desktop.h"
#include "Markdown/ScratchpadJournal.h"
#include "Observer.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Programs.h"
#include "Timing.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

#include <X11/keysym.h>

namespace {

using namespace bench;

constexpr unsigned long white = 0xffffff;
/// Of a converted page.
constexpr unsigned long pageColour = 0xf0f0f4;
constexpr int warmUps = 3;
constexpr double pause = 0.25;

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

/// The start of the first line.
Area firstLine(const Area& editor) { return {editor.left, editor.top, editor.left + 40, editor.top + 30}; }

/// Where a letter at the start of the first line leaves its ink, and the cursor none: a column that is dark
/// from the line's top to its bottom is a cursor.
std::vector<Point> firstLetter(Observer& screen, const Area& editor) {
  constexpr int cursorHeight = 11;
  const auto line = firstLine(editor);
  rest(1);
  const auto before = screen.coloursOf(line);
  screen.tapKey(XK_m);
  rest(1);
  const auto after = screen.coloursOf(line);
  screen.tapKey(XK_BackSpace);
  rest(1);
  std::vector<Point> points;
  for (int x = 0; x < line.width(); ++x) {
    std::vector<Point> column;
    for (int y = 0; y < line.height(); ++y) {
      const auto at =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(line.width()) + static_cast<std::size_t>(x);
      if (before[at] == white && after[at] != white) column.push_back({line.left + x, line.top + y});
    }
    if (column.size() < cursorHeight) points.insert(points.end(), column.begin(), column.end());
  }
  if (points.empty()) refuse("a letter left no ink");
  return points;
}

void measure(Observer& screen, const Area& editor, int rounds, Figures& figures) {
  const auto points = firstLetter(screen, editor);
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

/// The scratchpad with a text in it, which has the keyboard and the cursor before the text.
class Scratchpad {
 public:
  Scratchpad(Observer& screen, const std::filesystem::path& home, const std::string& text)
      : velkin_(startWith(home, text)) {
    rest(3);
    clickIcon(velkin_.pid);
    rest(3);
    screen.holdKey(XK_Control_L);
    screen.tapKey(XK_m);
    screen.releaseKey(XK_Control_L);
    rest(2);
    // What was written before is offered above the editor.
    const auto editor = waitForEditor(screen);
    screen.click({editor.left + 85, editor.top - 20});
    rest(2);
    if (waitForEditor(screen).top >= editor.top) refuse("the text was not brought back");
    screen.holdKey(XK_Control_L);
    screen.tapKey(XK_Home);
    screen.releaseKey(XK_Control_L);
    rest(1);
  }

  [[nodiscard]] pid_t pid() const { return velkin_.pid; }

 private:
  static Process startWith(const std::filesystem::path& home, const std::string& text) {
    writeSettings(home);
    platform::HeadlessPlatform desktop;
    desktop.dataFolder = home / ".local" / "share" / "velkin";
    std::filesystem::create_directories(desktop.dataFolder);
    velkin::ScratchpadJournalWriter(velkin::ScratchpadJournal::ofUser()).changed("", text);
    return Process("velkin-e2e", {}, home);
  }

  Process velkin_;
};

void compareLetters(Observer& screen, const char* what, std::size_t length, int rounds) {
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
    const Scratchpad scratchpad(screen, folder.path / "home", text);
    measure(screen, waitForEditor(screen), rounds, ours);
  }
  printRow(what, ours.median(), baseline.median(), 1.5);
}

/// The upper part of the page, away from its edges: where the first line is.
Area topOfPage(Observer& screen) {
  const auto page = screen.find(pageColour);
  if (!page) refuse("no page came");
  return {page->left + 4, page->top + 4, page->left + 150, page->top + 120};
}

void measurePage(Observer& screen, int rounds, Figures& figures) {
  rest(3);
  const auto area = topOfPage(screen);
  const auto usual = screen.coloursOf(area);
  screen.tapKey(XK_m);
  rest(3);
  const auto changed = screen.coloursOf(area);
  if (usual == changed) refuse("a key press changed nothing on the page");
  screen.tapKey(XK_BackSpace);
  for (int i = 0; i < warmUps + rounds; ++i) {
    rest(pause);
    if (!waitFor([&] { return screen.coloursOf(area) == usual; })) refuse("the page did not come back");
    const auto time =
        screen.timeFrom([&] { screen.holdKey(XK_m); }, [&] { return screen.coloursOf(area) == changed; });
    screen.releaseKey(XK_m);
    if (!time) refuse("a key press did not come to the page");
    if (i >= warmUps) figures.add(*time);
    rest(pause);
    screen.tapKey(XK_BackSpace);
  }
}

void comparePages(Observer& screen, const std::string& what, std::size_t length, int rounds) {
  const ScratchFolder folder;
  const auto text = textOfLength(length);
  const auto writePage = [&](const char* name, const std::string& source) {
    std::ofstream(folder.path / name, std::ios::binary) << velkin::MarkdownHtmlHelper(false).makeHTMLString(
        velkin::MarkdownHtmlHelper::makeParser(false).html(source));
    return (folder.path / name).string();
  };
  const auto usual = writePage("usual.html", text);
  const auto changed = writePage("changed.html", "m" + text);
  const auto file = folder.path / "text.md";
  std::ofstream(file, std::ios::binary) << text;
  Figures alone;
  Figures withEditor;
  Figures ours;
  {
    const Process window("baseline-preview", {"300", "500", usual, changed}, folder.path / "alone");
    measurePage(screen, rounds, alone);
  }
  {
    const Process window("baseline-preview", {"600", "500", usual, changed, file.string()},
                         folder.path / "with-editor");
    measurePage(screen, rounds, withEditor);
  }
  {
    const Scratchpad scratchpad(screen, folder.path / "home", text);
    measurePage(screen, rounds, ours);
  }
  printRow((what + ", beside a view alone").c_str(), ours.median(), alone.median(), 1.2);
  printRow((what + ", beside view and editor").c_str(), ours.median(), withEditor.median(), 1.2);
}

/// What thousands of keys leave behind in the program and its web process.
void measureGrowth(Observer& screen, int keys) {
  const ScratchFolder folder;
  const Scratchpad scratchpad(screen, folder.path / "home", textOfLength(20000));
  const auto editor = waitForEditor(screen);
  const auto points = firstLetter(screen, editor);
  const auto press = [&](int count) {
    for (int i = 0; i < count / 2; ++i) {
      for (const KeySym key : {XK_m, XK_BackSpace}) {
        screen.tapKey(key);
        rest(0.004);
      }
    }
    // All of them have come when the next one has.
    screen.tapKey(XK_m);
    if (!waitFor([&] { return !screen.shows(points, white); }, 120)) refuse("the keys did not come");
    screen.tapKey(XK_BackSpace);
    if (!waitFor([&] { return screen.shows(points, white); }, 120)) refuse("the last key did not come");
    rest(10);
  };
  press(500);
  const auto before = treeMemory(scratchpad.pid());
  for (int part = 1; part <= 5; ++part) {
    press(keys / 5);
    std::printf("%d keys: %.1f MB more\n", keys / 5 * part, treeMemory(scratchpad.pid()) - before);
    std::fflush(stdout);
  }
  const auto growth = treeMemory(scratchpad.pid()) - before;
  std::printf("\n%d keys in 20 kB: %.1f MB before, %.1f MB more after, goal 10 MB  %s\n", keys, before,
              growth, growth < 10 ? "reached" : "MISSED");
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
  int keys = 10000;
  std::string only;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--only") == 0) only = argv[i + 1];
    if (std::strcmp(argv[i], "--keys") == 0) keys = std::atoi(argv[i + 1]);
  }
  measureJournal();
  const ServicePages pages;
  Observer screen;
  printRowHead();
  const auto isWanted = [&](std::string_view what) { return only.empty() || only == what; };
  for (const auto& [size, length] : {std::pair{"1 kB", 1000}, {"100 kB", 100000}, {"1 MB", 1000000}}) {
    const auto what = std::string("key to letter, ") + size + ", ms";
    if (isWanted("letter")) compareLetters(screen, what.c_str(), static_cast<std::size_t>(length), rounds);
  }
  for (const auto& [size, length] : {std::pair{"1 kB", 1000}, {"100 kB", 100000}}) {
    const auto what = std::string("preview, ") + size;
    if (isWanted("preview")) comparePages(screen, what, static_cast<std::size_t>(length), rounds);
  }
  if (isWanted("memory")) measureGrowth(screen, keys);
}
