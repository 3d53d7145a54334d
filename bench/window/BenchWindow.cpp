// bench-window [--rounds N] [--blocks N] [--pause SECONDS]: from a key press to the painted change of view,
// in the program and in a window that only moves a label, and how long a key waits for the router. Runs on a
// desktop with a tray; ./dev bench window makes one.
#include "Desktop.h"
#include "Observer.h"
#include "Programs.h"
#include "RouterDecision.h"
#include "Timing.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include <X11/keysym.h>
#include <benchmark/benchmark.h>

namespace {

using namespace bench;
using enum ServicePages::Service;

// Wide enough for a sidebar beside the main page.
constexpr int width = 980;
constexpr int height = 600;
constexpr const char* size = "<key>viewWidth</key><real>980</real><key>viewHeight</key><real>600</real>";
constexpr int warmUps = 3;

struct Plan {
  int blocks = 3;
  int rounds = 20;
  double pause = 0.6;
};

struct Measured {
  Figures baseline;
  Figures switches;
  Figures sidebars;
};

Area waitForArea(Observer& screen, unsigned long colour, const char* orElse) {
  if (!waitFor([&] { return screen.find(colour).has_value(); })) refuse(orElse);
  // Until the window and its page have taken their place.
  std::optional<Area> area;
  for (;;) {
    rest(1);
    const auto now = screen.find(colour);
    if (now && area && now->left == area->left && now->right == area->right && now->top == area->top &&
        now->bottom == area->bottom)
      return *now;
    area = now;
  }
}

struct Expectation {
  std::vector<Point> points;
  unsigned long colour;
};

/// Presses the key until all points show their colours. The time it took is added to `figures`, if given.
void press(Observer& screen, KeySym key, const std::vector<Expectation>& expected, double pause,
           Figures* figures) {
  const auto time =
      screen.timeFrom([&] { screen.holdKey(key); },
                      [&] {
                        return std::all_of(expected.begin(), expected.end(),
                                           [&](const auto& e) { return screen.shows(e.points, e.colour); });
                      });
  screen.releaseKey(key);
  if (!time) refuse("a key press did not bring what it should");
  if (figures != nullptr) figures->add(*time);
  rest(pause);
}

void measureBaseline(Observer& screen, const Plan& plan, const ScratchFolder& folder, Figures& figures) {
  constexpr unsigned long labelColour = 0x1234ab;
  constexpr unsigned long boxColour = 0xab3412;
  const Process window("baseline-label",
                       {std::to_string(width), std::to_string(height), "#1234ab", "#ab3412"},
                       folder.path / "baseline");
  const auto left = waitForArea(screen, labelColour, "the window with the label did not come").spread();
  const auto right = waitForArea(screen, boxColour, "the window with the label did not come").spread();
  screen.holdKey(XK_Control_L);
  for (int i = 0; i < warmUps + plan.rounds; ++i) {
    const bool goesRight = i % 2 == 0;
    press(screen, XK_j, {{goesRight ? right : left, labelColour}, {goesRight ? left : right, boxColour}},
          plan.pause, i < warmUps ? nullptr : &figures);
  }
  screen.releaseKey(XK_Control_L);
}

void measureVelkin(Observer& screen, const Plan& plan, const ScratchFolder& folder, Measured& measured) {
  const auto home = folder.path / "home";
  writeSettings(home, size);
  const Process velkin("velkin-e2e", {}, home);
  rest(3);
  clickIcon(velkin.pid);
  const auto chatColour = ServicePages::colour(chat);
  const auto jiraColour = ServicePages::colour(jira);
  const auto page = waitForArea(screen, chatColour, "the popover did not come");

  screen.holdKey(XK_Control_L);
  screen.tapKey(XK_j);
  waitForArea(screen, jiraColour, "the other page did not come");
  for (int i = 0; i < warmUps + plan.rounds; ++i) {
    const bool toChat = i % 2 == 0;
    press(screen, toChat ? XK_t : XK_j, {{page.spread(), toChat ? chatColour : jiraColour}}, plan.pause,
          i < warmUps ? nullptr : &measured.switches);
  }
  if (screen.find(jiraColour)) {
    screen.tapKey(XK_t);
    waitForArea(screen, chatColour, "the page did not come back");
  }

  screen.holdKey(XK_Super_L);
  screen.tapKey(XK_j);
  const auto sidebar = waitForArea(screen, jiraColour, "the sidebar did not come");
  const auto beside = waitForArea(screen, chatColour, "the page beside the sidebar did not come");
  if (sidebar.right >= beside.left) refuse("the sidebar is not beside the page");
  for (int i = 0; i < warmUps + plan.rounds; ++i) {
    press(screen, XK_j, {{page.spread(), chatColour}}, plan.pause, nullptr);
    press(screen, XK_j, {{sidebar.spread(), jiraColour}, {beside.spread(), chatColour}}, plan.pause,
          i < warmUps ? nullptr : &measured.sidebars);
  }
  screen.releaseKey(XK_Super_L);
  screen.releaseKey(XK_Control_L);
}

void printFigures(const char* what, const Figures& figures, const Figures& reference, double goal) {
  const double ratio = figures.median() / reference.median();
  std::printf("%-44s %8.1f %8.1f %8.1f %8.2f %6.1f  %s\n", what, figures.min(), figures.median(),
              figures.p90(), ratio, goal, ratio <= goal ? "reached" : "MISSED");
}

/// Keeps the median of each row of the router instead of printing it.
class RowTimes : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
        microseconds[run.run_name.function_name] = run.GetAdjustedCPUTime() / 1000;
    }
  }
  std::map<std::string, double> microseconds;
};

void printRouter() {
  constexpr int repetitions = 5;
  registerRouterDecision(repetitions);
  RowTimes rows;
  benchmark::RunSpecifiedBenchmarks(&rows);
  const double reference = rows.microseconds.at(routerReference);
  const auto slowest = std::max_element(rows.microseconds.begin(), rows.microseconds.end(),
                                        [](const auto& a, const auto& b) { return a.second < b.second; });
  constexpr double goal = 2;
  const double time = slowest->second - reference;
  std::printf("\nkey press to the router's decision, slowest row (%s): %.2f us, goal %.1f  %s\n",
              slowest->first.c_str(), time, goal, time <= goal ? "reached" : "MISSED");
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) plan.rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--blocks") == 0) plan.blocks = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--pause") == 0) plan.pause = std::atof(argv[i + 1]);
  }
  Observer screen;
  const ServicePages pages;
  const ScratchFolder folder;
  // Where no window comes.
  screen.movePointer({5, 800});
  Measured measured;
  for (int i = 0; i < plan.blocks; ++i) {
    measureBaseline(screen, plan, folder, measured.baseline);
    measureVelkin(screen, plan, folder, measured);
  }
  std::printf("%-44s %8s %8s %8s %8s %6s\n", "key press to painted, ms", "min", "median", "p90", "ratio",
              "goal");
  printFigures("baseline: a label moves", measured.baseline, measured.baseline, 1);
  printFigures("switch between two loaded views", measured.switches, measured.baseline, 2);
  printFigures("a sidebar opens", measured.sidebars, measured.baseline, 2);
  printRouter();
}
