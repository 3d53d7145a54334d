#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace fuzz {

/// A folder for the process's files, in memory where the system has such a place.
class ScratchFolder {
 public:
  ScratchFolder() {
    const std::filesystem::path memory = "/dev/shm";
    const auto place =
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    auto pattern = (place / "velkin-fuzz-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::filesystem::path file(std::string_view name, std::string_view content) const {
    auto path = path_ / name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace fuzz
