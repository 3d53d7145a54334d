#pragma once

namespace bench {

/// The benchmark of the road that a key takes with a handler that does nothing at its end.
inline constexpr const char* routerReference = "a handler that does nothing";

/// Registers with Google Benchmark how long a key waits for the router's decision, row by row, and the
/// reference. Each runs so often, or as often as the command line says.
void registerRouterDecision(int repetitions = 0);

}  // namespace bench
