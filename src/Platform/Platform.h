#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Geometry.h"

namespace platform {

class DispatchQueue;
class NSURLSession;
class NSUserDefaults;

/// The desktop below the program: what the static accessors of the seam's classes ask. One is installed for the
/// life of the process (the real one by `main`, the in-memory one by a test's fixture).
class Platform {
 public:
  virtual ~Platform() = default;

  /// The installed platform; a fatal error if there is none.
  static Platform& current();
  static Platform* installed() noexcept;
  /// Installs `platform`, which must outlive everything that asks for it; nullptr uninstalls.
  static void install(Platform* platform) noexcept;

  virtual DispatchQueue& mainQueue() = 0;
  /// Seconds since 1970. Any thread.
  virtual double now() const = 0;
  virtual NSUserDefaults& standardUserDefaults() = 0;
  virtual NSURLSession& sharedURLSession() = 0;

  /// Remembers beyond the end of this process that it ended by a fatal error. Any thread.
  virtual void noteFatalError(std::string_view message) noexcept = 0;
  /// What `noteFatalError` of the process before this one remembered, and forgets it.
  virtual std::optional<std::string> takeLastFatalError() = 0;
};

}  // namespace platform
