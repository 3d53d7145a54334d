#pragma once

// g++ has a name for each, clang a question.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VELKIN_TESTS_ARE_SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELKIN_TESTS_ARE_SANITIZED
#endif

namespace velkin {

/// How often a test on random input repeats: `usual` times, or a tenth of that under a sanitizer, which is
/// ten to thirty times as slow and looks for wrong accesses, not wrong values.
constexpr int repetitions(int usual) {
#ifdef VELKIN_TESTS_ARE_SANITIZED
  return usual / 10;
#else
  return usual;
#endif
}

}  // namespace velkin
