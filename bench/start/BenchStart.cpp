// bench-start [--rounds N] [--idle SECONDS]: what starting, opening and keeping the program costs, each
// beside a baseline in the same run. Runs on a desktop with a tray; ./dev bench start makes one.
#include "Desktop.h"
#include "Observer.h"
#include "Programs.h"
#include "Timing.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <X11/keysym.h>

namespace {

using namespace bench;
namespace fs = std::filesystem;

long contextSwitches(pid_t pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  std::string word;
  long sum = 0;
  while (status >> word) {
    if (!word.ends_with("voluntary_ctxt_switches:")) continue;
    long value = 0;
    status >> value;
    sum += value;
  }
  return sum;
}

/// The time from `start` to the next registration of an icon with the tray. What `start` gives back is kept
/// until then.
template <typename Start>
double registrationTime(const Start& start) {
  bool isRegistered = false;
  const auto subscription = g_dbus_connection_signal_subscribe(
      sessionBus(), nullptr, "org.kde.StatusNotifierWatcher", "StatusNotifierItemRegistered", nullptr,
      nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer flag) {
        *static_cast<bool*>(flag) = true;
      },
      &isRegistered, nullptr);
  const auto before = Clock::now();
  const auto started = start();
  if (!waitFor([&] { return isRegistered; })) refuse("a program did not register with the tray");
  const auto time = millisecondsSince(before);
  g_dbus_connection_signal_unsubscribe(sessionBus(), subscription);
  return time;
}

double registrationTime(const std::string& program, const fs::path& home) {
  return registrationTime(
      [&] { return std::make_unique<Process>(program, std::vector<std::string>{}, home); });
}

/// The process that has the program's name on the bus; 0 if there is none.
pid_t ownerOfTheName() {
  GVariant* reply = g_dbus_connection_call_sync(
      sessionBus(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "GetConnectionUnixProcessID", g_variant_new("(s)", "com.tarnvale.Velkin"), G_VARIANT_TYPE("(u)"),
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  if (reply == nullptr) return 0;
  guint32 pid = 0;
  g_variant_get(reply, "(u)", &pid);
  g_variant_unref(reply);
  return static_cast<pid_t>(pid);
}

/// Both programs as they are installed: in one folder, under the names that they look for.
fs::path installedLauncher(const fs::path& folder) {
  const auto built = fs::read_symlink("/proc/self/exe").parent_path();
  fs::create_directories(folder);
  // A link would lead it to the folder where it was built.
  fs::copy_file(built / "VelkinLauncher", folder / "VelkinLauncher");
  fs::create_symlink(built / "velkin-e2e", folder / "velkin");
  return folder / "VelkinLauncher";
}

/// What a login does: the launcher starts the program, which outlives it.
double loginTime(const fs::path& launcher, const fs::path& home) {
  const auto time = registrationTime(launcher, home);
  // It says so to the launcher a little later than to the tray.
  rest(0.3);
  const auto program = ownerOfTheName();
  if (program == 0) refuse("the launcher's program has no name on the bus");
  kill(program, SIGTERM);
  if (!waitFor([] { return ownerOfTheName() == 0; })) refuse("the launcher's program did not end");
  rest(0.3);
  return time;
}

/// The time from `toggle` to the chat page on the screen, over `rounds` openings after the first.
Figures reopenTime(Observer& screen, const std::function<void()>& toggle, int rounds) {
  const auto colour = ServicePages::colour(ServicePages::chat);
  toggle();
  std::optional<Area> page;
  if (!waitFor([&] { return (page = screen.find(colour)).has_value(); }))
    refuse("the page did not come on show");
  rest(1);
  const auto points = screen.find(colour)->spread();
  Figures times;
  for (int i = 0; i < rounds; ++i) {
    toggle();
    waitFor([&] { return !screen.find(colour); });
    // A press and a click of one gesture are told apart by time.
    rest(0.6);
    const auto time = screen.timeFrom(toggle, [&] { return screen.shows(points, colour); });
    if (!time) refuse("the page did not come back");
    times.add(*time);
    rest(0.3);
  }
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  int rounds = 15;
  double idleSeconds = 20;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--idle") == 0) idleSeconds = std::atof(argv[i + 1]);
  }
  Observer screen;
  const ServicePages pages;
  const ScratchFolder folder;
  const auto home = folder.path / "home";
  const auto baselineHome = folder.path / "baseline";
  writeSettings(home);

  printRowHead();
  Figures ours;
  Figures theirs;
  Figures logins;
  const auto launcher = installedLauncher(folder.path / "bin");
  for (int i = 0; i < rounds; ++i) {
    ours.add(registrationTime("velkin-e2e", home));
    theirs.add(registrationTime("baseline-tray", baselineHome));
    logins.add(loginTime(launcher, home));
  }
  printRow("exec to registered with the tray, ms", ours.median(), theirs.median(), 1.2);
  printRow("the same by the launcher of the login, ms", logins.median(), ours.median(), 1.3);

  double theirReopen = 0;
  double theirMemory = 0;
  {
    const Process window("baseline-window", {ServicePages::address(ServicePages::chat)}, baselineHome);
    rest(3);
    const auto toggle = [] {
      callMethod("com.tarnvale.Baseline", "/Baseline", "com.tarnvale.Baseline", "Toggle");
    };
    theirReopen = reopenTime(screen, toggle, rounds).median();
    theirMemory = treeMemory(window.pid);
  }
  const Process velkin("velkin-e2e", {}, home);
  rest(3);
  const auto toggle = [&] { clickIcon(velkin.pid); };
  const double ourReopen = reopenTime(screen, toggle, rounds).median();
  printRow("reopening to the first painted frame, ms", ourReopen, theirReopen, 1.5);
  printRow("memory with the chat page, MB", treeMemory(velkin.pid), theirMemory, 1.1);
  screen.holdKey(XK_Control_L);
  for (const KeySym key : {XK_d, XK_b, XK_g, XK_h, XK_j}) {
    screen.tapKey(key);
    rest(3);
  }
  screen.releaseKey(XK_Control_L);
  printRow("memory with six pages visited, MB (x 6)", treeMemory(velkin.pid), 6 * theirMemory, 0.8);
  toggle();
  rest(5);
  const long before = contextSwitches(velkin.pid);
  rest(idleSeconds);
  std::printf("context switches of the closed program: %ld in %.0f s\n", contextSwitches(velkin.pid) - before,
              idleSeconds);
}
