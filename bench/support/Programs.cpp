#include "Programs.h"

#include "Timing.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace fs = std::filesystem;

namespace {

fs::path makeScratchFolder() {
  std::string pattern = "/tmp/velkin-bench-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) refuse("can't make a folder in /tmp");
  return pattern;
}

std::vector<pid_t> childrenOf(pid_t process) {
  std::vector<pid_t> found;
  const std::string tasks = "/proc/" + std::to_string(process) + "/task";
  std::error_code error;
  for (const auto& task : fs::directory_iterator(tasks, error)) {
    std::ifstream children(task.path() / "children");
    for (pid_t child = 0; children >> child;) found.push_back(child);
  }
  return found;
}

}  // namespace

ScratchFolder::ScratchFolder() : path(makeScratchFolder()) {}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const fs::path& home) {
  fs::create_directories(home);
  const auto path = (fs::read_symlink("/proc/self/exe").parent_path() / program).string();
  pid = fork();
  if (pid != 0) return;
  setenv("HOME", home.c_str(), 1);
  for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
    unsetenv(name);
  if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(126);
  std::vector<char*> all{const_cast<char*>(path.c_str())};
  for (const auto& argument : arguments) all.push_back(const_cast<char*>(argument.c_str()));
  all.push_back(nullptr);
  execv(path.c_str(), all.data());
  _exit(127);
}

Process::~Process() {
  kill(pid, SIGTERM);
  waitpid(pid, nullptr, 0);
  rest(0.3);
}

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

int countTree(pid_t root) {
  int count = 1;
  for (const auto child : childrenOf(root)) count += countTree(child);
  return count;
}

double ownMemory(pid_t process) {
  std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
  double kilobytes = 0;
  for (std::string line; std::getline(rollup, line);) {
    for (const char* name : {"Private_Clean:", "Private_Dirty:"}) {
      if (line.starts_with(name)) kilobytes += std::atof(line.c_str() + std::strlen(name));
    }
  }
  return kilobytes / 1024;
}

void writeSettings(const fs::path& home, const std::string& more) {
  fs::create_directories(home / ".config/velkin");
  std::ofstream(home / ".config/velkin/com.tarnvale.Velkin.plist")
      << R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>onboardingCompleted</key><true/>)"
      << R"(<key>releaseNoteVersion</key><integer>23</integer><key>hemingwayEnabled</key><true/>)" << more
      << "</dict></plist>";
}

}  // namespace bench
