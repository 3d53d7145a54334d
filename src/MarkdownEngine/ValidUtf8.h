#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace markdown {

/// A text as valid UTF-8: the given one if it is, otherwise a copy of it with U+FFFD in the place of each bad
/// sequence, as long as it could have been the beginning of a scalar.
class ValidUtf8 {
 public:
  /// The given text must outlive this.
  explicit ValidUtf8(std::string_view text);
  ValidUtf8(const ValidUtf8&) = delete;
  ValidUtf8& operator=(const ValidUtf8&) = delete;

  [[nodiscard]] std::string_view text() const noexcept {
    return wasValid_ ? given_ : std::string_view(repaired_);
  }
  [[nodiscard]] bool wasValid() const noexcept { return wasValid_; }

 private:
  std::string_view given_;
  std::string repaired_;
  bool wasValid_ = true;
};

}  // namespace markdown
