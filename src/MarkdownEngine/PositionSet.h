#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace markdown {

/// A set of positions in a text: one bit for each, taken from memory when the first position is inserted.
class PositionSet {
 public:
  explicit PositionSet(std::size_t textSize) noexcept : textSize_(textSize) {}

  void insert(std::size_t position) {
    if (words_.empty()) words_.resize(textSize_ / bitsPerWord + 1);
    words_[position / bitsPerWord] |= bit(position);
  }
  [[nodiscard]] bool contains(std::size_t position) const noexcept {
    return !words_.empty() && (words_[position / bitsPerWord] & bit(position)) != 0;
  }

 private:
  static constexpr std::size_t bitsPerWord = 64;
  static std::uint64_t bit(std::size_t position) noexcept {
    return std::uint64_t{1} << position % bitsPerWord;
  }

  std::size_t textSize_;
  std::vector<std::uint64_t> words_;
};

}  // namespace markdown
