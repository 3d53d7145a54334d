// settings-under-fire COUNT: lets COUNT writers die by SIGKILL at random moments and looks after each whether
// the settings file is whole and holds every set that had returned; then fills the disk; then lets two
// processes write at the same time. Exit code 0 if nothing was lost.

#include "Platform/DebugLog.h"
#include "Platform/FileUserDefaults.h"
#include "unit/TemporaryFolder.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using platform::FileUserDefaults;
using platform::PropertyListValue;
namespace fs = std::filesystem;

/// What a writer reports on its pipe when a set has returned. Smaller than PIPE_BUF, so it arrives whole or
/// not at all.
struct Report {
  std::int32_t key;
  std::int64_t value;
};

constexpr int keyCount = 8;

std::string nameOf(std::int64_t key) { return "key" + std::to_string(key); }

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "settings-under-fire: %s\n", what.c_str());
  std::exit(1);
}

struct Child {
  pid_t process = -1;
  int reports = -1;
};

/// Runs `work` in a child, with the end of a pipe to report on.
template <class Work>
Child start(Work work) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe");
  std::fflush(nullptr);
  const auto process = fork();
  if (process < 0) fail("no process");
  if (process == 0) {
    close(ends[0]);
    work(ends[1]);
    _exit(0);
  }
  close(ends[1]);
  return {process, ends[0]};
}

int await(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::optional<PropertyListValue::Dictionary> parsed(const fs::path& path) {
  const auto list = platform::readPropertyList(velkin::contentsOf(path));
  const auto* dictionary = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
  return dictionary != nullptr ? std::optional(*dictionary) : std::nullopt;
}

/// A child to be killed: sets one key after the other to ever higher numbers.
Child startWriter(const fs::path& path, std::int64_t firstValue) {
  return start([&](int reports) {
    FileUserDefaults defaults(path);
    for (Report report{0, firstValue};; ++report.value) {
      report.key = static_cast<std::int32_t>(report.value % keyCount);
      defaults.setObject(report.value, nameOf(report.key));
      if (write(reports, &report, sizeof report) != sizeof report) _exit(1);
    }
  });
}

/// The state of the file as the reports make it out.
using Known = std::map<std::int64_t, std::int64_t>;

/// After a kill: everything reported is there. The one set that was under way may be there too.
void check(const fs::path& path, const Known& known, std::int64_t underWay) {
  const auto content = parsed(path);
  if (!content) fail("the file is damaged: " + velkin::contentsOf(path));
  for (const auto& [key, value] : known) {
    const auto entry = content->find(nameOf(key));
    const auto* stored = entry != content->end() ? entry->second.as<std::int64_t>() : nullptr;
    const bool isThere =
        stored != nullptr && (*stored == value || (*stored == underWay && key == underWay % keyCount));
    if (!isThere) {
      fail(nameOf(key) + " was set to " + std::to_string(value) + " and is " +
           (stored != nullptr ? std::to_string(*stored) : "absent"));
    }
  }
}

struct Tally {
  std::int64_t sets = 0;
  std::int64_t cutOff = 0;
  std::int64_t leftovers = 0;
};

Tally killWriters(const fs::path& path, int count, std::mt19937& random) {
  Tally tally;
  Known known;
  std::int64_t next = 1;
  for (int i = 0; i < count; ++i) {
    const auto writer = startWriter(path, next);
    // The moment is chosen by the number of sets that were reported and a pause after the last of them, from
    // none to longer than a set takes, so that kills fall into every part of a set.
    auto wanted = std::discrete_distribution({6, 6, 1, 1, 1})(random);
    Report report{};
    while (wanted-- > 0 && read(writer.reports, &report, sizeof report) == sizeof report) {
      known[report.key] = report.value;
      next = report.value + 1;
      ++tally.sets;
    }
    usleep(std::uniform_int_distribution<useconds_t>(0, 3000)(random));
    kill(writer.process, SIGKILL);
    if (const auto status = await(writer.process); !WIFSIGNALED(status)) fail("a writer ended by itself");
    while (read(writer.reports, &report, sizeof report) == sizeof report) {
      known[report.key] = report.value;
      next = report.value + 1;
      ++tally.sets;
    }
    close(writer.reports);
    if (fs::exists(path) || !known.empty()) {
      check(path, known, next);
      const auto content = *parsed(path);
      const auto entry = content.find(nameOf(next % keyCount));
      if (entry != content.end() && entry->second == PropertyListValue(next)) {
        // Done but not reported: from now on it counts.
        known[next % keyCount] = next;
        ++tally.cutOff;
        ++next;
      }
    }
    if (fs::exists(path.parent_path() / ("." + path.filename().string() + ".new"))) ++tally.leftovers;
  }
  return tally;
}

void checkNothingPilesUp(const fs::path& path) {
  FileUserDefaults(path).setObject(true, "last");
  for (const auto& entry : fs::directory_iterator(path.parent_path())) {
    const auto name = entry.path().filename().string();
    if (name != path.filename() && !name.ends_with(".lock")) fail(name + " is left over");
  }
}

/// A writer that may not make a file larger than the present one: the old file stays whole, and the log says
/// why.
void fillDisk(const fs::path& path) {
  FileUserDefaults(path).setObject("before", "text");
  const auto before = velkin::contentsOf(path);
  const auto writer = start([&](int) {
    bool isLogged = false;
    platform::setDebugLogSink([&](std::string_view line) {
      isLogged =
          isLogged || (line.find("memory only") != line.npos && line.find("File too large") != line.npos);
    });
    FileUserDefaults defaults(path);
    const rlimit tight{before.size(), RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &tight);
    for (int i = 0; i < 100; ++i) defaults.setObject(std::string(1000, 'x'), "text");
    const bool isInMemory = defaults.stringForKey("text") == std::string(1000, 'x');
    _exit(isLogged && isInMemory ? 0 : 1);
  });
  const auto status = await(writer.process);
  close(writer.reports);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) fail("a full disk ended the writer or wasn't told");
  if (velkin::contentsOf(path) != before) fail("a full disk changed the file");
}

constexpr int cannotMount = 77;

/// Gives this process a view of the mounted disks that is its own and that it may change.
bool ownMounts() {
  const auto user = geteuid();
  const auto group = getegid();
  if (user == 0) return unshare(CLONE_NEWNS) == 0;
  if (unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
  velkin::writeFile("/proc/self/setgroups", "deny");
  velkin::writeFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
  velkin::writeFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  return geteuid() == 0;
}

/// The same on a disk that is really full: a small one, seen by one child only. False where none may be
/// mounted.
bool fillSmallDisk(const fs::path& folder) {
  fs::create_directories(folder);
  const auto writer = start([&](int) {
    if (!ownMounts() || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") != 0) {
      _exit(cannotMount);
    }
    const auto path = folder / "domain.plist";
    FileUserDefaults defaults(path);
    defaults.setObject("before", "text");
    const auto before = velkin::contentsOf(path);
    velkin::writeFile(folder / "filler", std::string(200'000, 'x'));
    bool isLogged = false;
    platform::setDebugLogSink([&](std::string_view line) {
      isLogged = isLogged || line.find("No space left on device") != line.npos;
    });
    const std::string large(6000, 'n');
    defaults.setObject(large, "text");
    const bool isWhole = velkin::contentsOf(path) == before && defaults.stringForKey("text") == large;
    fs::remove(folder / "filler");
    defaults.setObject(1, "later");
    const bool isWritten = FileUserDefaults(path).stringForKey("text") == large;
    _exit(isLogged && isWhole && isWritten ? 0 : 1);
  });
  const auto status = await(writer.process);
  close(writer.reports);
  if (WIFEXITED(status) && WEXITSTATUS(status) == cannotMount) return false;
  if (status != 0) fail("a small disk that was full changed the file, or wasn't told");
  return true;
}

/// Two processes, each with keys of its own, at the same time.
void writeAtOnce(const fs::path& path, int count) {
  std::vector<Child> writers;
  for (const auto* name : {"one", "two"}) {
    writers.push_back(start([&](int) {
      FileUserDefaults defaults(path);
      for (int i = 0; i < count; ++i) defaults.setObject(i, name + std::to_string(i));
      // A writer that the other one kept waiting is to end only when its last set is on disk.
      const auto last = name + std::to_string(count - 1);
      const auto isStored = [&] {
        const auto content = parsed(path);
        return content && content->contains(last);
      };
      for (int i = 0; i < 6000 && !isStored(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }));
  }
  for (const auto& writer : writers) {
    if (await(writer.process) != 0) fail("a writer failed");
    close(writer.reports);
  }
  const auto content = parsed(path);
  if (!content) fail("two writers damaged the file");
  for (const auto* name : {"one", "two"}) {
    for (int i = 0; i < count; ++i) {
      const auto entry = content->find(name + std::to_string(i));
      if (entry == content->end() || entry->second != PropertyListValue(i)) {
        fail("lost " + (name + std::to_string(i)));
      }
    }
  }
}

int run(int count) {
  const velkin::TemporaryFolder folder;
  const auto seed = std::random_device()();
  std::mt19937 random(seed);
  std::printf("seed %u\n", seed);
  const auto start = std::chrono::steady_clock::now();
  const auto path = folder.path() / "velkin" / "killed.plist";
  const auto tally = killWriters(path, count, random);
  checkNothingPilesUp(path);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf(
      "%d writers killed in %.1f s: %lld sets reported, all there; %lld done but not reported; %lld died "
      "inside a write\n",
      count, seconds.count(), static_cast<long long>(tally.sets), static_cast<long long>(tally.cutOff),
      static_cast<long long>(tally.leftovers));
  // A fire that never hits anything proves nothing.
  if (count >= 1000 && (tally.leftovers == 0 || tally.sets == 0)) fail("no kill fell into a write");
  fillDisk(folder.path() / "velkin" / "full.plist");
  std::puts("size limit: the old file stayed whole");
  const bool isMounted = fillSmallDisk(folder.path() / "small");
  std::puts(isMounted ? "full disk: the old file stayed whole"
                      : "full disk: left out, no disk may be mounted here");
  writeAtOnce(folder.path() / "velkin" / "shared.plist", 100);
  std::puts("two writers at once: nothing lost");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  const std::string_view text = argc == 2 ? argv[1] : "";
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < 0) {
    std::fputs("usage: settings-under-fire COUNT\n", stderr);
    return 2;
  }
  return run(count);
}
