#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace markdown {

/// Sixteen bytes that are looked at together. The compilers turn what is done with them into the processor's
/// own operations on such vectors, whichever they are.
using ByteVector = std::uint8_t __attribute__((vector_size(16)));
using SignedByteVector = std::int8_t __attribute__((vector_size(16)));

inline constexpr std::size_t byteVectorSize = sizeof(ByteVector);

template <typename Vector = ByteVector>
[[nodiscard]] Vector loadBytes(const char* data) noexcept {
  Vector vector;
  std::memcpy(&vector, data, sizeof vector);
  return vector;
}

/// The result of a comparison of bytes: all bits of each byte for which it holds.
template <typename Mask>
[[nodiscard]] ByteVector asBytes(Mask mask) noexcept {
  return reinterpret_cast<ByteVector>(mask);
}

/// Both halves of a vector, in the order of memory.
struct ByteWords {
  std::uint64_t first;
  std::uint64_t second;
};
[[nodiscard]] inline ByteWords words(ByteVector bytes) noexcept {
  ByteWords result;
  std::memcpy(&result, &bytes, sizeof result);
  return result;
}

}  // namespace markdown
