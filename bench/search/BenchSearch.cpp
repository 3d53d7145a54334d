// bench-search [--rounds N] [--openings N] [--answers N]: from the hot key's press to the panel on the screen
// with the keyboard, beside a bare window with one entry; what many openings leave behind; and a long
// answer's way to the page. Runs on a desktop with a tray; ./dev bench search makes one.
#include "ChatService.h"
#include "Components/MarkdownHtmlHelper.h"
#include "Desktop.h"
#include "Focus.h"
#include "Observer.h"
#include "Programs.h"
#include "Timing.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <X11/keysym.h>
#include <unistd.h>

namespace {

using namespace bench;

struct Plan {
  int rounds = 40;
  int openings = 1000;
  int answers = 10;
};
constexpr int warmUps = 5;

/// What the answer begins with: a colour that nothing else has, so that its painting is unmistakable.
constexpr unsigned long answerColour = 0x5511aa;
constexpr const char* answerStart = "<div style=\"background:#5511aa;height:360px\"></div>\n\n";

void pressHotKey(Observer& screen, KeySym key) {
  screen.holdKey(XK_Control_L);
  screen.holdKey(XK_Shift_L);
  screen.tapKey(key);
  screen.releaseKey(XK_Shift_L);
  screen.releaseKey(XK_Control_L);
}

/// Milliseconds from the hot key's press until the condition holds, looked at each half millisecond.
template <class Condition>
double timeOfHotKey(Observer& screen, KeySym key, const Condition& holds) {
  constexpr double patience = 10'000;
  const auto start = Clock::now();
  pressHotKey(screen, key);
  while (!holds()) {
    if (millisecondsSince(start) > patience) refuse("the hot key did not do what it should");
    usleep(500);
  }
  return millisecondsSince(start);
}

void measureOpenings(Observer& screen, const Focus& focus, KeySym key, int rounds, Figures& figures) {
  for (int i = 0; i < warmUps + rounds; ++i) {
    const double time = timeOfHotKey(screen, key, [&] { return focus.isElsewhere(); });
    if (i >= warmUps) figures.add(time);
    rest(0.15);
    timeOfHotKey(screen, key, [&] { return focus.isHere(); });
    rest(0.15);
  }
}

void openAndClose(Observer& screen, const Focus& focus, int count) {
  for (int i = 0; i < count; ++i) {
    timeOfHotKey(screen, XK_r, [&] { return focus.isElsewhere(); });
    timeOfHotKey(screen, XK_r, [&] { return focus.isHere(); });
  }
}

void printGoal(const char* what, double value, const char* unit, double goal) {
  std::printf("%-58s %8.2f %-4s %8.2f  %s\n", what, value, unit, goal, value <= goal ? "reached" : "MISSED");
}

std::string longAnswer() {
  constexpr std::size_t size = 200'000;
  std::string text = answerStart;
  for (int i = 1; text.size() < size; ++i) {
    text +=
        "## Part " + std::to_string(i) +
        "\n\nSome *words* of prose with `code`, **weight** and [a link](https://example.org/a).\n\n"
        "- one\n- two\n\n| a | b |\n| --- | --- |\n| 1 | 2 |\n\n```cpp\nint main() { return 0; }\n```\n\n";
  }
  return text;
}

/// Milliseconds from the Markdown to the whole page.
double conversionTime(const std::string& answer) {
  Figures figures;
  for (int i = 0; i < 21; ++i) {
    const auto start = Clock::now();
    const auto page = velkin::MarkdownHtmlHelper(false).makeHTMLString(
        velkin::MarkdownHtmlHelper::makeParser(false).html(answer));
    if (page.size() < answer.size()) refuse("the answer was not converted");
    figures.add(millisecondsSince(start));
  }
  return figures.median();
}

/// Milliseconds from the service's answer to its painting, in a new panel for each.
Figures answerTimes(Observer& screen, const Focus& focus, const ChatService& service, int count) {
  Figures figures;
  for (int i = 0; i < warmUps + count; ++i) {
    timeOfHotKey(screen, XK_r, [&] { return focus.isElsewhere(); });
    const auto panel = focus.place();
    const Point middle{panel.x + panel.width / 2, panel.y + 250};
    rest(0.2);
    screen.tapKey(XK_a);
    rest(0.1);
    const auto start = Clock::now();
    const auto painted = screen.timeFrom([&] { screen.tapKey(XK_Return); },
                                         [&] { return screen.shows({middle}, answerColour); });
    if (!painted) refuse("the answer was not painted");
    const double answered = std::chrono::duration<double, std::milli>(service.answered() - start).count();
    if (i >= warmUps) figures.add(*painted - answered);
    rest(0.2);
    timeOfHotKey(screen, XK_r, [&] { return focus.isHere(); });
    rest(0.3);
  }
  return figures;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) plan.rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--openings") == 0) plan.openings = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--answers") == 0) plan.answers = std::atoi(argv[i + 1]);
  }
  const ServicePages pages;
  const auto answer = longAnswer();
  const ChatService service(answer);
  const ScratchFolder folder;
  Observer screen;
  screen.movePointer({5, 880});
  const Focus focus;

  const auto home = folder.path / "home";
  writeSettings(home, "<key>searchBarKey</key><string>key</string>");
  const Process velkin("velkin-e2e", {}, home);
  const Process entry("baseline-entry", {}, folder.path / "baseline");
  rest(4);

  Figures ours;
  Figures bare;
  // In turns, so that both have the machine's quiet and busy moments.
  constexpr int blocks = 4;
  for (int i = 0; i < blocks; ++i) {
    measureOpenings(screen, focus, XK_e, plan.rounds / blocks, bare);
    measureOpenings(screen, focus, XK_r, plan.rounds / blocks, ours);
  }
  std::printf("%-40s %8s %8s %8s %8s %6s\n", "hot key to panel with the keyboard, ms", "min", "median", "p90",
              "ratio", "goal");
  const double ratio = ours.median() / bare.median();
  std::printf("%-40s %8.1f %8.1f %8.1f\n", "baseline: a window with one entry", bare.min(), bare.median(),
              bare.p90());
  std::printf("%-40s %8.1f %8.1f %8.1f %8.2f %6.1f  %s\n\n", "the search bar", ours.min(), ours.median(),
              ours.p90(), ratio, 1.5, ratio <= 1.5 ? "reached" : "MISSED");

  const int processes = countTree(velkin.pid);
  const double memory = ownMemory(velkin.pid);
  openAndClose(screen, focus, plan.openings);
  rest(2);
  std::printf("%-58s %8s %-4s %8s\n", "", "value", "", "goal");
  const std::string openings = "memory left by " + std::to_string(plan.openings) + " openings";
  printGoal(openings.c_str(), ownMemory(velkin.pid) - memory, "MiB", 2);
  printGoal("processes left by them", countTree(velkin.pid) - processes, "", 0);

  const double conversion = conversionTime(answer);
  const auto whole = answerTimes(screen, focus, service, plan.answers);
  rest(3);
  std::printf(
      "\nan answer of %zu bytes, ms: converted %.2f, from the service's answer to its painting %.1f\n",
      answer.size(), conversion, whole.median());
  printGoal("conversion / the page's own share", conversion / (whole.median() - conversion), "", 1);
  printGoal("processes left by the answers", countTree(velkin.pid) - processes, "", 0);
}
