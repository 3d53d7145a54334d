#pragma once

#include <memory>
#include <utility>

#include <glib-object.h>

namespace platform {

/// Owns one reference to a GObject.
template <class T>
class GObjectPtr {
 public:
  GObjectPtr() = default;
  /// Takes over a reference that the caller has.
  static GObjectPtr adopt(T* object) { return GObjectPtr(object); }
  /// Takes a reference of its own; a floating one becomes it.
  static GObjectPtr retain(T* object) {
    if (object != nullptr) g_object_ref_sink(object);
    return GObjectPtr(object);
  }
  GObjectPtr(const GObjectPtr& other) : object_(other.object_) {
    if (object_ != nullptr) g_object_ref(object_);
  }
  GObjectPtr(GObjectPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GObjectPtr& operator=(GObjectPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GObjectPtr() {
    if (object_ != nullptr) g_object_unref(object_);
  }

  T* get() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

 private:
  explicit GObjectPtr(T* object) : object_(object) {}
  T* object_ = nullptr;
};

struct GFreeDeleter {
  void operator()(void* memory) const { g_free(memory); }
};
using GStringPtr = std::unique_ptr<char, GFreeDeleter>;

struct GErrorDeleter {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorDeleter>;

struct GVariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantDeleter>;

}  // namespace platform
