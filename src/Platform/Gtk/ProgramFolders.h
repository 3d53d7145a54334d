#pragma once

#include <filesystem>
#include <string>

namespace platform {

/// Where the program's own files and the user's lie.
struct ProgramFolders {
  /// That of the running program.
  static std::filesystem::path programs();
  /// Icons and images: `share/velkin` beside the folder that holds the program.
  static std::filesystem::path data();
  /// The settings' folder.
  static std::filesystem::path userConfig();
  /// The web engine's lasting data.
  static std::filesystem::path userData();
  static std::filesystem::path userCache();
  static std::filesystem::path userState();

  /// Makes the folders of the web engine's data and cache, for their owner only. In words why they can't be
  /// used, if something else than a folder stands in the place of one; else empty.
  static std::string makeUserFolders();
};

}  // namespace platform
