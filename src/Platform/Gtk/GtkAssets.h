#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

/// The icon theme's name for a symbol of the system; an unknown name is taken as the theme's own.
std::string iconNameOfSymbol(std::string_view symbol);

/// A folder of icon themes, with the symbols that the program brings itself. They stand in a theme in it:
/// what stands beside one never takes a text's colour.
std::filesystem::path folderOfOwnSymbols();

/// The icon's name, in the program's own icon folder, of the status item's image.
std::string iconNameOfStatusImage(std::string_view image);

/// The file of an image of the program.
std::filesystem::path fileOfImage(std::string_view image);

}  // namespace platform
