// bench-start [--rounds N] [--idle SECONDS]: what starting, opening and keeping the program costs, each
// beside a baseline in the same run. Runs on a desktop with a tray; ./dev bench start makes one.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gio/gio.h>
#include <libsoup/soup.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr const char* page =
    R"(<!DOCTYPE html><html><body style="margin:0;background:#1234ab"><p>x</p></body></html>)";
constexpr unsigned long pageColour = 0x1234ab;
constexpr const char* chat = "http://127.83.0.1:8471/chat";

GDBusConnection* bus = nullptr;
Display* display = nullptr;
fs::path programs;

double milliseconds(Clock::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void turn() {
  while (g_main_context_pending(nullptr)) g_main_context_iteration(nullptr, FALSE);
}

bool waitFor(const std::function<bool()>& condition, double seconds = 30) {
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (Clock::now() > end) return false;
    turn();
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  return true;
}

void rest(double seconds) {
  waitFor([] { return false; }, seconds);
}

/// A program of ours with a home of its own.
class Process {
 public:
  Process(const std::string& program, const std::vector<std::string>& arguments, const fs::path& home) {
    fs::create_directories(home);
    pid = fork();
    if (pid != 0) return;
    setenv("HOME", home.c_str(), 1);
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
      unsetenv(name);
    std::freopen("/dev/null", "w", stderr);
    const auto path = (programs / program).string();
    std::vector<char*> all{const_cast<char*>(path.c_str())};
    for (const auto& argument : arguments) all.push_back(const_cast<char*>(argument.c_str()));
    all.push_back(nullptr);
    execv(path.c_str(), all.data());
    _exit(127);
  }
  ~Process() {
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
    rest(0.3);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  pid_t pid;
};

/// Proportional memory of a process and all below it, in MB.
double treeMemory(pid_t root) {
  std::map<pid_t, pid_t> parents;
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const pid_t pid = std::atoi(entry.path().filename().c_str());
    if (pid == 0) continue;
    std::ifstream stat(entry.path() / "stat");
    std::string text((std::istreambuf_iterator<char>(stat)), {});
    const auto end = text.rfind(')');
    if (end != std::string::npos) parents[pid] = std::atoi(text.c_str() + end + 4);
  }
  double kilobytes = 0;
  for (const auto& [pid, parent] : parents) {
    pid_t above = pid;
    while (above != root && above > 1 && parents.count(above) != 0) above = parents[above];
    if (above != root) continue;
    std::ifstream rollup("/proc/" + std::to_string(pid) + "/smaps_rollup");
    std::string word;
    while (rollup >> word) {
      if (word != "Pss:") continue;
      double value = 0;
      rollup >> value;
      kilobytes += value;
      break;
    }
  }
  return kilobytes / 1024;
}

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

/// The first point on the screen, on a coarse grid, that has the page's colour; false if there is none.
bool findPage(int& foundX, int& foundY) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), 0, 0, DisplayWidth(display, 0),
                            DisplayHeight(display, 0), AllPlanes, ZPixmap);
  bool isFound = false;
  for (int y = 100; y < image->height && !isFound; y += 50) {
    for (int x = 100; x < image->width && !isFound; x += 50) {
      if ((XGetPixel(image, x, y) & 0xffffff) != pageColour) continue;
      foundX = x;
      foundY = y;
      isFound = true;
    }
  }
  XDestroyImage(image);
  return isFound;
}

bool hasPageColour(int x, int y) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
  const bool is = (XGetPixel(image, 0, 0) & 0xffffff) == pageColour;
  XDestroyImage(image);
  return is;
}

void call(const std::string& name, const char* path, const char* interface, const char* method,
          GVariant* arguments) {
  g_dbus_connection_call(bus, name.c_str(), path, interface, method, arguments, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
  g_dbus_connection_flush_sync(bus, nullptr, nullptr);
}

double registrationTime(const std::string& program, const fs::path& home) {
  bool isRegistered = false;
  const auto subscription = g_dbus_connection_signal_subscribe(
      bus, nullptr, "org.kde.StatusNotifierWatcher", "StatusNotifierItemRegistered", nullptr, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer flag) {
        *static_cast<bool*>(flag) = true;
      },
      &isRegistered, nullptr);
  const auto start = Clock::now();
  const Process process(program, {}, home);
  const bool isThere = waitFor([&] { return isRegistered; });
  const auto time = milliseconds(Clock::now() - start);
  g_dbus_connection_signal_unsubscribe(bus, subscription);
  if (!isThere) std::fprintf(stderr, "bench-start: %s did not register\n", program.c_str());
  return time;
}

/// The median time from `toggle` to the page's colour on the screen, over `rounds` openings after the first.
double reopenTime(const std::function<void()>& toggle, int rounds) {
  int x = 0;
  int y = 0;
  toggle();
  if (!waitFor([&] { return findPage(x, y); })) {
    std::fprintf(stderr, "bench-start: the page did not come on show\n");
    std::exit(1);
  }
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    toggle();
    waitFor([&] { return !hasPageColour(x, y); });
    // A press and a click of one gesture are told apart by time.
    rest(0.6);
    const auto start = Clock::now();
    toggle();
    waitFor([&] { return hasPageColour(x, y); });
    times.push_back(milliseconds(Clock::now() - start));
    rest(0.3);
  }
  return median(times);
}

void writeSettings(const fs::path& home) {
  fs::create_directories(home / ".config/velkin");
  std::ofstream(home / ".config/velkin/com.tarnvale.Velkin.plist")
      << R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>onboardingCompleted</key><true/>)"
      << R"(<key>releaseNoteVersion</key><integer>23</integer><key>hemingwayEnabled</key><true/></dict></plist>)";
}

void row(const char* what, double ours, double theirs, double goal) {
  std::printf("%-44s %9.1f %9.1f %8.2f %8.2f  %s\n", what, ours, theirs, ours / theirs, goal,
              ours / theirs <= goal ? "reached" : "MISSED");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  int rounds = 15;
  double idleSeconds = 20;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--rounds") == 0) rounds = std::atoi(argv[i + 1]);
    if (std::strcmp(argv[i], "--idle") == 0) idleSeconds = std::atof(argv[i + 1]);
  }
  programs = fs::read_symlink("/proc/self/exe").parent_path();
  bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  display = XOpenDisplay(nullptr);
  if (bus == nullptr || display == nullptr) {
    std::fprintf(stderr, "bench-start: needs a display and a session bus\n");
    return 1;
  }
  SoupServer* server = soup_server_new(nullptr, nullptr);
  soup_server_add_handler(
      server, nullptr,
      [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer) {
        soup_server_message_set_status(message, 200, nullptr);
        soup_server_message_set_response(message, "text/html", SOUP_MEMORY_STATIC, page, std::strlen(page));
      },
      nullptr, nullptr);
  for (int i = 1; i <= 6; ++i) {
    GSocketAddress* address =
        g_inet_socket_address_new_from_string(("127.83.0." + std::to_string(i)).c_str(), 8471);
    soup_server_listen(server, address, SoupServerListenOptions(0), nullptr);
    g_object_unref(address);
  }
  char pattern[] = "/tmp/velkin-bench-XXXXXX";
  const fs::path folder = mkdtemp(pattern);
  const auto home = folder / "home";
  writeSettings(home);

  std::printf("%-44s %9s %9s %8s %8s\n", "", "Velkin", "baseline", "ratio", "goal");
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int i = 0; i < rounds; ++i) {
    ours.push_back(registrationTime("velkin-e2e", home));
    theirs.push_back(registrationTime("baseline-tray", folder / "baseline"));
  }
  row("exec to registered with the tray, ms", median(ours), median(theirs), 1.2);

  double theirReopen = 0;
  double theirMemory = 0;
  {
    const Process window("baseline-window", {chat}, folder / "baseline");
    rest(3);
    theirReopen = reopenTime(
        [] { call("com.tarnvale.Baseline", "/Baseline", "com.tarnvale.Baseline", "Toggle", nullptr); },
        rounds);
    theirMemory = treeMemory(window.pid);
  }
  const Process velkin("velkin-e2e", {}, home);
  rest(3);
  const auto item = "org.kde.StatusNotifierItem-" + std::to_string(velkin.pid) + "-1";
  const auto activate = [&] {
    call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
         g_variant_new("(ii)", 640, 14));
  };
  const double ourReopen = reopenTime(activate, rounds);
  row("reopening to the first painted frame, ms", ourReopen, theirReopen, 1.5);
  row("memory with the chat page, MB", treeMemory(velkin.pid), theirMemory, 1.1);
  for (const char* key : {"ctrl+d", "ctrl+b", "ctrl+g", "ctrl+h", "ctrl+j"}) {
    if (std::system((std::string("xdotool key ") + key).c_str()) != 0) return 1;
    rest(3);
  }
  row("memory with six pages visited, MB (x 6)", treeMemory(velkin.pid), 6 * theirMemory, 0.8);
  activate();
  rest(5);
  const long before = contextSwitches(velkin.pid);
  rest(idleSeconds);
  std::printf("context switches of the closed program: %ld in %.0f s\n", contextSwitches(velkin.pid) - before,
              idleSeconds);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}
