#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace markdown {

/// A set of positions in a text: one bit for each, taken from memory when the first position is inserted.
class PositionSet {
 public:
  explicit PositionSet(std::size_t textSize) noexcept : textSize_(textSize) {}

  void insert(std::size_t position) {
    allocate();
    words_[position / bitsPerWord] |= bit(position);
  }
  void erase(std::size_t position) noexcept {
    if (!words_.empty()) words_[position / bitsPerWord] &= ~bit(position);
  }
  [[nodiscard]] bool contains(std::size_t position) const noexcept {
    return !words_.empty() && (words_[position / bitsPerWord] & bit(position)) != 0;
  }
  /// The largest member from `from` up to, and not including, `end`.
  [[nodiscard]] std::optional<std::size_t> last(std::size_t from, std::size_t end) const noexcept {
    if (words_.empty() || from >= end) return std::nullopt;
    std::size_t index = (end - 1) / bitsPerWord;
    std::uint64_t word = words_[index] & (~std::uint64_t{0} >> (bitsPerWord - 1 - (end - 1) % bitsPerWord));
    while (word == 0) {
      if (index <= from / bitsPerWord) return std::nullopt;
      word = words_[--index];
    }
    const std::size_t found =
        index * bitsPerWord + bitsPerWord - 1 - static_cast<std::size_t>(std::countl_zero(word));
    return found < from ? std::nullopt : std::optional(found);
  }
  /// Takes over the members of the other set, all of which lie from `from` up to `end`.
  void takeOver(PositionSet& other, std::size_t from, std::size_t end) {
    if (other.words_.empty()) return;
    allocate();
    for (std::size_t index = from / bitsPerWord; index <= end / bitsPerWord; ++index) {
      words_[index] |= other.words_[index];
      other.words_[index] = 0;
    }
  }

 private:
  static constexpr std::size_t bitsPerWord = 64;
  static std::uint64_t bit(std::size_t position) noexcept {
    return std::uint64_t{1} << position % bitsPerWord;
  }
  void allocate() {
    if (words_.empty()) words_.resize(textSize_ / bitsPerWord + 1);
  }

  std::size_t textSize_;
  std::vector<std::uint64_t> words_;
};

}  // namespace markdown
