#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Feeds every file of the given folder to the fuzz target, with any compiler.
int main(int count, char** values) {
  if (count != 2) {
    std::fprintf(stderr, "Usage: %s CORPUS\n", values[0]);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(values[1])) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (const auto& path : files) {
    // Named first, so that a crash tells its file.
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const std::string input(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
  std::printf("%zu files\n", files.size());
  return files.empty() ? 1 : 0;
}
