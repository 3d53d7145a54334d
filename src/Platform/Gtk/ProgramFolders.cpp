#include "Platform/Gtk/ProgramFolders.h"

#include <system_error>

#include <glib.h>

namespace platform {

namespace {

constexpr const char* folderName = "velkin";

}  // namespace

std::filesystem::path ProgramFolders::data() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return program.parent_path().parent_path() / "share" / folderName;
}

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

}  // namespace platform
