#pragma once

#include <optional>
#include <string>
#include <vector>

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
  /// When the program was built, in seconds since 1970; 0 if the build doesn't say it.
  double creationDate = 0;
  /// "CFBundleName".
  std::optional<std::string> name;
  /// The desktop libraries that the program runs with, as in "GTK 4.8.3".
  std::vector<std::string> libraryVersions = {};
};

}  // namespace platform
