#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/DynamicProperty.h"

#include <concepts>
#include <memory>
#include <mutex>
#include <utility>

namespace platform {

namespace detail {

/// A value with its observers; setting an equal value tells nobody.
template <class T>
class ObservedValue {
 public:
  explicit ObservedValue(T value) : value_(std::move(value)) {}

  T get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  /// False if the value was already so.
  bool set(T value) {
    {
      const std::lock_guard lock(mutex_);
      if constexpr (std::equality_comparable<T>) {
        if (value_ == value) return false;
      }
      value_ = std::move(value);
    }
    observers_.notify();
    return true;
  }

  Connection subscribe(std::function<void()> callback) { return observers_.subscribe(std::move(callback)); }

 private:
  mutable std::mutex mutex_;
  T value_;
  Observers observers_;
};

}  // namespace detail

/// A view's own memory. It survives the view's being built again at the same place. Copies share the value,
/// so a closure captures the field by value and sets it later. Any thread.
template <class T>
class State : public DynamicProperty {
 public:
  State() : State(T{}) {}
  State(T initial) : value_(std::make_shared<detail::ObservedValue<T>>(std::move(initial))) {}

  T get() const { return value_->get(); }
  void set(T value) const { value_->set(std::move(value)); }

  Binding<T> binding() const {
    return Binding<T>([value = value_] { return value->get(); },
                      [value = value_](T v) { value->set(std::move(v)); });
  }

  void adopt(DynamicProperty& earlier) override {
    if (auto* same = dynamic_cast<State*>(&earlier)) value_ = same->value_;
  }
  Connection subscribe(std::function<void()> callback) const override {
    return value_->subscribe(std::move(callback));
  }

 private:
  std::shared_ptr<detail::ObservedValue<T>> value_;
};

}  // namespace platform
