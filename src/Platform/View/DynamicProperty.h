#pragma once

#include "Platform/View/Observers.h"

#include <functional>
#include <vector>

namespace platform {

/// A field of a view that can change by itself and then has the view drawn anew: the base of `State` and
/// `ObservedObject`. While a capture is open on a thread, each property that is constructed there joins it;
/// so a view's fields are found without being listed.
class DynamicProperty {
 public:
  virtual ~DynamicProperty();

  /// Takes over what `earlier`, the same field of the view that stood here before, has kept.
  virtual void adopt(DynamicProperty& earlier) = 0;
  virtual Connection subscribe(std::function<void()> callback) const = 0;

  /// Collects the properties constructed on this thread during its lifetime.
  class Capture {
   public:
    Capture();
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Those that lie inside the object at `start`, in the order of its fields.
    std::vector<DynamicProperty*> within(const void* start, std::size_t size) const;

   private:
    friend class DynamicProperty;
    std::vector<DynamicProperty*> constructed_;
    Capture* outer_;
  };

 protected:
  DynamicProperty();
  DynamicProperty(const DynamicProperty& other);
  DynamicProperty& operator=(const DynamicProperty&) = default;
};

}  // namespace platform
