#pragma once

#include "Platform/Connection.h"

#include <functional>
#include <memory>

namespace platform {

/// Who wants to hear of a change. All operations may be called on any thread; an observer is called on the
/// thread that made the change, and may still be called once while its connection ends on another thread.
class Observers {
 public:
  Observers();
  ~Observers();
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  Connection subscribe(std::function<void()> callback);
  void notify() const;

 private:
  struct List;
  std::unique_ptr<List> list_;
};

}  // namespace platform
