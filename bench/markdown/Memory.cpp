#include "Memory.h"

#include "MarkdownEngine/MarkdownParser.h"

#include <cstdio>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double peakResidentBytes() {
  constexpr double bytesPerUnit = 1024;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * bytesPerUnit;
}

double residentBytes() {
  unsigned long total = 0;
  unsigned long resident = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr) return 0;
  if (std::fscanf(file, "%lu %lu", &total, &resident) != 2) resident = 0;
  std::fclose(file);
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double measure(const std::function<std::string()>& makeText) {
  const std::string text = makeText();
  const markdown::MarkdownParser parser;
  // What the libraries load once isn't counted.
  static_cast<void>(parser.html("*a* \u00e9\u0301 [b][c]"));
  const double before = residentBytes();
  const std::string html = parser.html(text);
  return (peakResidentBytes() - before) / static_cast<double>(text.size());
}

}  // namespace

std::optional<double> peakMemoryPerInputByte(const std::function<std::string()>& makeText) {
  int ends[2];
  if (pipe(ends) != 0) return std::nullopt;
  const pid_t child = fork();
  if (child == 0) {
    const double result = measure(makeText);
    const bool isWritten = write(ends[1], &result, sizeof result) == static_cast<ssize_t>(sizeof result);
    _exit(isWritten ? 0 : 1);
  }
  close(ends[1]);
  double result = 0;
  const bool isRead =
      child > 0 && read(ends[0], &result, sizeof result) == static_cast<ssize_t>(sizeof result);
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return isRead ? std::optional(result) : std::nullopt;
}
