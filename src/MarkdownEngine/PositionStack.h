#pragma once

#include "MarkdownEngine/GrowingArray.h"

#include <cstddef>
#include <cstdint>

namespace markdown {

/// A stack of positions in a text, each above the one under it. Only the distances are kept, most of them in
/// one byte, so that a text full of openers takes no more than its own size.
class PositionStack {
 public:
  [[nodiscard]] bool isEmpty() const noexcept { return distances_.empty(); }
  /// Not to be asked for while the stack is empty.
  [[nodiscard]] std::size_t top() const noexcept { return top_; }

  void push(std::size_t position) {
    std::size_t distance = position - top_;
    top_ = position;
    // The highest bits come first; every further byte says that more of the distance stands before it.
    std::uint8_t groups[maxGroups];
    std::size_t count = 0;
    do {
      groups[count++] = static_cast<std::uint8_t>(distance & groupMask);
      distance >>= bitsPerGroup;
    } while (distance > 0);
    for (std::size_t i = count; i > 0; --i) {
      distances_.push_back(i == count ? groups[i - 1] : static_cast<std::uint8_t>(groups[i - 1] | goesOn));
    }
  }
  void pop() noexcept {
    std::size_t distance = 0;
    unsigned shift = 0;
    std::uint8_t group = 0;
    do {
      group = distances_.back();
      distances_.pop_back();
      distance |= static_cast<std::size_t>(group & groupMask) << shift;
      shift += bitsPerGroup;
    } while ((group & goesOn) != 0);
    top_ -= distance;
  }
  void clear() noexcept {
    distances_.clear();
    top_ = 0;
  }

 private:
  static constexpr unsigned bitsPerGroup = 7;
  static constexpr std::uint8_t groupMask = 0x7F;
  static constexpr std::uint8_t goesOn = 0x80;
  static constexpr std::size_t maxGroups = 10;

  GrowingArray<std::uint8_t> distances_;
  std::size_t top_ = 0;
};

}  // namespace markdown
