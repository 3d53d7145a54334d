#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

namespace markdown {

/// A vector for plain values of which there may be millions. It grows by `realloc`, which moves the pages of
/// a large block instead of copying them; a standard vector would touch three times the memory on the way.
template <typename Value>
class GrowingArray {
  static_assert(std::is_trivially_copyable_v<Value> && std::is_trivially_destructible_v<Value>);

 public:
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
  [[nodiscard]] Value& operator[](std::size_t index) noexcept { return values_.get()[index]; }
  [[nodiscard]] const Value& operator[](std::size_t index) const noexcept { return values_.get()[index]; }
  [[nodiscard]] Value& back() noexcept { return values_.get()[size_ - 1]; }
  [[nodiscard]] const Value& back() const noexcept { return values_.get()[size_ - 1]; }
  [[nodiscard]] Value* begin() noexcept { return values_.get(); }
  [[nodiscard]] Value* end() noexcept { return values_.get() + size_; }
  [[nodiscard]] const Value* begin() const noexcept { return values_.get(); }
  [[nodiscard]] const Value* end() const noexcept { return values_.get() + size_; }

  void push_back(const Value& value) {
    if (size_ == capacity_) {
      const Value kept = value;
      grow();
      values_.get()[size_++] = kept;
    } else {
      values_.get()[size_++] = value;
    }
  }
  void pop_back() noexcept { --size_; }
  /// Drops the values from `size` on.
  void truncate(std::size_t size) noexcept { size_ = size; }
  void clear() noexcept { size_ = 0; }

 private:
  struct Free {
    void operator()(Value* values) const noexcept { std::free(values); }
  };

  void grow() {
    constexpr std::size_t firstCapacity = 64;
    const std::size_t capacity = capacity_ == 0 ? firstCapacity : capacity_ * 2;
    auto* const grown = static_cast<Value*>(std::realloc(values_.get(), capacity * sizeof(Value)));
    if (grown == nullptr) throw std::bad_alloc();
    static_cast<void>(values_.release());
    values_.reset(grown);
    capacity_ = capacity;
  }

  std::unique_ptr<Value, Free> values_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace markdown
