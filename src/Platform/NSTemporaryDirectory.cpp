#include "Platform/NSTemporaryDirectory.h"

#include "Platform/WholeFile.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

std::filesystem::path folder() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && *runtime == '/') return std::filesystem::path(runtime) / "velkin";
  std::error_code error;
  // Everybody's folder: a name that others don't come upon by chance.
  return std::filesystem::temp_directory_path(error) / ("velkin-" + std::to_string(getuid()));
}

}  // namespace

std::optional<std::string> NSTemporaryDirectory() {
  const auto path = folder();
  makePrivateFolder(path);
  struct stat status {};
  // No link: somebody else could have laid it there.
  const bool isOurs =
      lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == getuid();
  if (!isOurs || chmod(path.c_str(), S_IRWXU) != 0) return std::nullopt;
  return path.string() + "/";
}

}  // namespace platform
