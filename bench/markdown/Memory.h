#pragma once

#include <cstddef>

/// What the program has taken from the heap; the bench replaces the global operators to know it.
namespace memory {

[[nodiscard]] std::size_t liveBytes() noexcept;
[[nodiscard]] std::size_t peakBytes() noexcept;
/// Lets the peak begin again at what is live.
void resetPeak() noexcept;

}  // namespace memory
