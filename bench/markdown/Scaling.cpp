#include "Scaling.h"

#include "CpuTime.h"
#include "Families.h"
#include "MarkdownEngine/MarkdownParser.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

using Make = std::function<std::string(std::size_t)>;

/// The sizes of the inputs, each twice the one before, and how often the shortest time of each is looked for.
struct Sizes {
  std::size_t smallest;
  std::size_t largest;
  int leastRuns;
};
constexpr Sizes forFamilies{std::size_t{64} << 10, std::size_t{4} << 20, 5};
/// There are thousands of mixtures.
constexpr Sizes forPairs{std::size_t{256} << 10, std::size_t{1} << 20, 3};
constexpr double limit = 2.3;

double secondsFor(const std::string& text, int leastRuns) {
  const markdown::MarkdownParser parser;
  double best = 1e9;
  double sum = 0;
  // Short times are taken often, as one interruption would outweigh them.
  for (int runs = 0; runs < leastRuns || (sum < 0.03 && runs < 60); ++runs) {
    const double start = cpuSeconds();
    static_cast<void>(parser.html(text));
    const double seconds = cpuSeconds() - start;
    best = std::min(best, seconds);
    sum += seconds;
    if (sum > 1.0) break;
  }
  return best;
}

struct Row {
  std::string name;
  std::vector<double> seconds;
  double worstRatio = 0;
};

Row measure(const std::string& name, const Sizes& sizes, const Make& make) {
  Row row{name, {}, 0};
  for (std::size_t size = sizes.smallest; size <= sizes.largest; size *= 2) {
    row.seconds.push_back(secondsFor(make(size), sizes.leastRuns));
    const std::size_t count = row.seconds.size();
    if (count > 1) row.worstRatio = std::max(row.worstRatio, row.seconds[count - 1] / row.seconds[count - 2]);
  }
  return row;
}

/// Measured again if it seems too steep: what else the machine does may have met one size.
Row measureSteadily(const std::string& name, const Sizes& sizes, const Make& make) {
  Row row = measure(name, sizes, make);
  for (int again = 0; again < 3 && row.worstRatio >= limit; ++again) {
    Row other = measure(name, sizes, make);
    if (other.worstRatio < row.worstRatio) row = std::move(other);
  }
  return row;
}

void print(const Row& row) {
  std::printf("%-22s", row.name.c_str());
  for (const double seconds : row.seconds) std::printf(" %8.2f", seconds * 1e3);
  std::printf("   %5.2f%s\n", row.worstRatio, row.worstRatio < limit ? "" : "  !");
  std::fflush(stdout);
}

void printHead(const Sizes& sizes) {
  std::printf("%-22s", "ms for kB of input:");
  for (std::size_t size = sizes.smallest; size <= sizes.largest; size *= 2) std::printf(" %8zu", size >> 10);
  std::printf("   worst time(2n)/time(n), below %.1f wanted\n", limit);
}

}  // namespace

void printScaling() {
  printHead(forFamilies);
  for (const Family& family : families()) {
    print(measureSteadily(family.name, forFamilies,
                          [&](std::size_t size) { return repeated(family.piece, size); }));
  }
  print(measureSteadily("deeper lists", forFamilies, deeperAndDeeperLists));
  print(measureSteadily("deeper, then shallower", forFamilies, deeperAndShallowerLists));
}

void printScalingOfPairs() {
  printHead(forPairs);
  std::size_t count = 0;
  double worst = 0;
  const auto take = [&](const std::string& name, const Make& make) {
    const Row row = measureSteadily(name, forPairs, make);
    ++count;
    if (row.worstRatio >= limit || row.worstRatio > worst) print(row);
    worst = std::max(worst, row.worstRatio);
  };
  for (const Family& first : families()) {
    for (const Family& second : families()) {
      if (&first == &second) continue;
      take(first.name + " then " + second.name, [&](std::size_t size) {
        return repeated(first.piece, size / 2) + repeated(second.piece, size / 2);
      });
      if (&first < &second) {
        take(first.name + " and " + second.name,
             [&](std::size_t size) { return repeated(first.piece + second.piece, size); });
      }
    }
  }
  std::printf("%zu mixtures, the worst ratio is %.2f\n", count, worst);
}
