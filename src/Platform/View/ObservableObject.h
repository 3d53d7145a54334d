#pragma once

#include "Platform/View/DynamicProperty.h"
#include "Platform/View/State.h"

#include <memory>
#include <utility>

namespace platform {

/// An object whose `Published` fields redraw every view that observes it.
class ObservableObject {
 public:
  ObservableObject() = default;
  virtual ~ObservableObject() = default;
  ObservableObject(const ObservableObject&) = delete;
  ObservableObject& operator=(const ObservableObject&) = delete;

  Connection subscribe(std::function<void()> callback) { return observers_.subscribe(std::move(callback)); }
  void notifyObservers() const { observers_.notify(); }

 private:
  Observers observers_;
};

/// A field of an `ObservableObject`: a getter, a setter and a publisher of its own changes. Any thread.
template <class T>
class Published {
 public:
  Published(ObservableObject& owner, T initial) : owner_(owner), value_(std::move(initial)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  T get() const { return value_.get(); }
  void set(T value) {
    if (value_.set(std::move(value))) owner_.notifyObservers();
  }
  Connection subscribe(std::function<void()> callback) { return value_.subscribe(std::move(callback)); }

 private:
  ObservableObject& owner_;
  detail::ObservedValue<T> value_;
};

/// A view's reference to an object that it observes.
template <class T>
class ObservedObject : public DynamicProperty {
 public:
  ObservedObject(std::shared_ptr<T> object) : object_(std::move(object)) {}

  T* operator->() const noexcept { return object_.get(); }
  T& operator*() const noexcept { return *object_; }
  const std::shared_ptr<T>& shared() const noexcept { return object_; }

  // The view built last says which object it observes.
  void adopt(DynamicProperty&) override {}
  Connection subscribe(std::function<void()> callback) const override {
    return object_ ? object_->subscribe(std::move(callback)) : Connection();
  }

 private:
  std::shared_ptr<T> object_;
};

}  // namespace platform
