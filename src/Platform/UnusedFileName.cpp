#include "Platform/UnusedFileName.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

/// Leaves room for a number and for what file systems add, below their limit of 255 bytes.
constexpr std::size_t longestName = 200;
constexpr int mostNumbers = 10000;

std::string harmless(std::string_view suggestion) {
  const auto slash = suggestion.find_last_of("/\\");
  if (slash != std::string_view::npos) suggestion.remove_prefix(slash + 1);
  std::string name;
  for (const char c : suggestion) {
    const auto byte = static_cast<unsigned char>(c);
    name += byte < 0x20 || byte == 0x7f ? '_' : c;
  }
  while (!name.empty() && (name.front() == '.' || name.front() == ' ')) name.erase(0, 1);
  if (name.size() > longestName) {
    auto extension = std::filesystem::path(name).extension().string();
    if (extension.size() > 20) extension.clear();
    auto length = longestName - extension.size();
    // Not in the middle of a character.
    while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xc0) == 0x80) --length;
    name = name.substr(0, length) + extension;
  }
  return name.empty() ? "download" : name;
}

}  // namespace

std::optional<std::filesystem::path> reserveUnusedFile(const std::filesystem::path& folder,
                                                       std::string_view suggestedName) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  const std::filesystem::path name = harmless(suggestedName);
  for (int number = 1; number <= mostNumbers; ++number) {
    auto candidate = folder / name;
    if (number > 1) {
      candidate =
          folder / (name.stem().string() + " (" + std::to_string(number) + ")" + name.extension().string());
    }
    const int file = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0) {
      ::close(file);
      return candidate;
    }
    if (errno != EEXIST) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace platform
