#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Makes an empty file in `folder` under `suggestedName`, or under that name with " (2)", " (3)" and so on
/// before its extension if something is there already; so nothing is ever overwritten, and nobody else gets
/// the name. The name is made harmless first: no folders, no control characters, not hidden, not too long.
/// Nothing if the folder can't be written to.
std::optional<std::filesystem::path> reserveUnusedFile(const std::filesystem::path& folder,
                                                       std::string_view suggestedName);

}  // namespace platform
