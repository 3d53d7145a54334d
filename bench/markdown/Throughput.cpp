#include "Throughput.h"

#include "CpuTime.h"
#include "MarkdownEngine/MarkdownParser.h"
#include "Memory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <cmark.h>
#include <md4c-html.h>

namespace {

/// Runs in turn, so that what else the machine does meets all of them alike.
constexpr int rounds = 15;

template <typename Convert>
double secondsFor(Convert convert) {
  const double start = cpuSeconds();
  convert();
  return cpuSeconds() - start;
}

std::string withMd4c(const std::string& text) {
  std::string html;
  html.reserve(text.size() / 4 * 5);
  md_html(
      text.data(), static_cast<MD_SIZE>(text.size()),
      [](const MD_CHAR* piece, MD_SIZE size, void* to) {
        static_cast<std::string*>(to)->append(piece, size);
      },
      &html, MD_DIALECT_GITHUB, 0);
  return html;
}

}  // namespace

void compareThroughput(const std::string& name, const std::function<std::string()>& makeText) {
  const auto peak = peakMemoryPerInputByte(makeText);
  const std::string text = makeText();
  const markdown::MarkdownParser parser;
  double engine = 1e9;
  double md4c = 1e9;
  double cmark = 1e9;
  std::size_t written = 0;
  for (int round = 0; round < rounds; ++round) {
    engine = std::min(engine, secondsFor([&] { written = parser.html(text).size(); }));
    md4c = std::min(md4c, secondsFor([&] { static_cast<void>(withMd4c(text)); }));
    cmark = std::min(cmark, secondsFor([&] {
                       std::free(cmark_markdown_to_html(text.data(), text.size(), CMARK_OPT_UNSAFE));
                     }));
  }
  const double megabytes = static_cast<double>(text.size()) / 1e6;
  std::printf("%-24s %8.2f MB -> %8.2f MB\n", name.c_str(), megabytes, static_cast<double>(written) / 1e6);
  std::printf("  engine %8.1f MB/s\n", megabytes / engine);
  std::printf("  md4c   %8.1f MB/s   engine/md4c  %5.2f\n", megabytes / md4c, md4c / engine);
  std::printf("  cmark  %8.1f MB/s   engine/cmark %5.2f\n", megabytes / cmark, cmark / engine);
  if (peak)
    std::printf("  peak memory of the engine, its result included: %.2f bytes for each byte of input\n",
                *peak);
  std::printf("\n");
}
