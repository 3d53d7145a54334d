#pragma once

namespace velkin {

/// How often a test on random input repeats: `usual` times, or a tenth of that under a sanitizer, which is
/// ten to thirty times as slow and looks for wrong accesses, not wrong values.
constexpr int repetitions(int usual) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return usual / 10;
#else
  return usual;
#endif
}

}  // namespace velkin
