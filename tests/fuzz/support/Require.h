#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

/// Ends the process if a promise isn't kept: for the fuzzer, a finding.
inline void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

}  // namespace fuzz
