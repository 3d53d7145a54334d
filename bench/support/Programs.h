#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace bench {

/// A folder of its own below the temporary one, gone with this object.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path path;
};

/// A program that stands beside this one, with a home of its own; it ends with this object.
class Process {
 public:
  Process(const std::string& program, const std::vector<std::string>& arguments,
          const std::filesystem::path& home);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  pid_t pid;
};

/// Proportional memory of a process and all below it, in MB.
[[nodiscard]] double treeMemory(pid_t root);

/// A process and all below it.
[[nodiscard]] int countTree(pid_t root);

/// Memory that is the process's own and nobody else's, in MiB.
[[nodiscard]] double ownMemory(pid_t process);

/// The settings of someone who has seen the first pages and uses all views. `more`: further entries of the
/// property list's dictionary.
void writeSettings(const std::filesystem::path& home, const std::string& more = {});

}  // namespace bench
