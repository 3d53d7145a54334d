#pragma once

#include <filesystem>

namespace platform {

/// Where the program's own files and the user's lie.
struct ProgramFolders {
  /// Icons and images: `share/velkin` beside the folder that holds the program.
  static std::filesystem::path data();
  /// The settings' folder.
  static std::filesystem::path userConfig();
  /// The web engine's lasting data.
  static std::filesystem::path userData();
  static std::filesystem::path userCache();
  static std::filesystem::path userState();
};

}  // namespace platform
