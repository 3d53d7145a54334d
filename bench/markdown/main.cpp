#include "ChatCorpus.h"
#include "Scaling.h"
#include "Throughput.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage =
    "Usage: bench-markdown [--throughput | --scaling | --pairs | --corpus MEGABYTES | FILE]\n"
    "With no argument: throughput on the generated corpus, then the scaling table.\n"
    "  --pairs    the scaling of mixtures of two kinds of input; takes some minutes\n"
    "  --corpus   writes the generated corpus to standard output\n"
    "  FILE       throughput on this file\n";

constexpr std::size_t megabyte = 1'000'000;

void printThroughput() {
  compareThroughput("generated, 1 MB", [] { return makeChatCorpus(megabyte); });
  compareThroughput("generated, 10 MB", [] { return makeChatCorpus(10 * megabyte); });
}

int benchFile(const char* path) {
  if (!std::ifstream(path)) {
    std::fprintf(stderr, "bench-markdown: can't read %s\n%s", path, usage);
    return 1;
  }
  compareThroughput(path, [path] {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  });
  return 0;
}

}  // namespace

int main(int count, char** values) {
  if (count == 1) {
    printThroughput();
    printScaling();
    return 0;
  }
  const std::string_view argument = values[1];
  if (count == 3 && argument == "--corpus") {
    const std::string corpus = makeChatCorpus(std::stoul(values[2]) * megabyte);
    std::fwrite(corpus.data(), 1, corpus.size(), stdout);
    return 0;
  }
  if (count != 2 || argument == "--help") {
    std::fputs(usage, stderr);
    return 2;
  }
  if (argument == "--throughput") {
    printThroughput();
  } else if (argument == "--scaling") {
    printScaling();
  } else if (argument == "--pairs") {
    printScalingOfPairs();
  } else {
    return benchFile(values[1]);
  }
  return 0;
}
