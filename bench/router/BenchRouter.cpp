// bench-router: how long a key waits for the router's decision, beside the same road with a handler that does
// nothing.
#include "RouterDecision.h"

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  bench::registerRouterDecision();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
