#include "Platform/Gtk/ProgramFolders.h"

#include "Platform/WholeFile.h"

#include <cerrno>
#include <system_error>

#include <glib.h>

namespace platform {

namespace {

constexpr const char* folderName = "velkin";

}  // namespace

std::filesystem::path ProgramFolders::programs() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path ProgramFolders::data() { return programs().parent_path() / "share" / folderName; }

std::filesystem::path ProgramFolders::userConfig() {
  return std::filesystem::path(g_get_user_config_dir()) / folderName;
}

std::filesystem::path ProgramFolders::userData() {
  return std::filesystem::path(g_get_user_data_dir()) / folderName;
}

std::filesystem::path ProgramFolders::userCache() {
  return std::filesystem::path(g_get_user_cache_dir()) / folderName;
}

std::filesystem::path ProgramFolders::userState() {
  return std::filesystem::path(g_get_user_state_dir()) / folderName;
}

std::string ProgramFolders::makeUserFolders() {
  for (const auto& folder : {userData(), userCache()}) {
    makePrivateFolder(folder);
    std::error_code error;
    const auto status = std::filesystem::status(folder, error);
    if (std::filesystem::is_directory(status)) {
      // Logins are in here, and who was visited. Folders of earlier versions were open to others.
      std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
      continue;
    }
    // A folder that is missing, on a full disk for example, is for the engine to bear. Where a file stands in
    // its place or above it, or a link that leads to nothing, the engine would end the program.
    const bool isBelowFile = error.value() == ENOTDIR;
    if (isBelowFile || std::filesystem::exists(status) || std::filesystem::is_symlink(folder, error))
      return "The folder " + folder.string() + " can't be used: something else is in its place.";
  }
  return {};
}

}  // namespace platform
