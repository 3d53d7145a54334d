#pragma once

#include <optional>
#include <string>

namespace platform {

/// What the build says of the program.
class NSBundle {
 public:
  static const NSBundle& main();

  std::optional<std::string> bundleIdentifier;
  /// "CFBundleShortVersionString", such as "1.0.0".
  std::optional<std::string> shortVersionString;
  /// "CFBundleVersion": the build number, as text.
  std::optional<std::string> version;
  /// When the program was built, in seconds since 1970.
  double creationDate = 0;
  /// "CFBundleName".
  std::optional<std::string> name;
};

}  // namespace platform
