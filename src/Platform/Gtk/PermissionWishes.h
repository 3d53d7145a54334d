#pragma once

#include <optional>
#include <span>
#include <string_view>

#include <webkit/webkit.h>

namespace platform {

/// Something that pages ask for.
struct PermissionWish {
  /// The word under which the answer is kept.
  std::string_view kind;
  /// "Allow this site to ...?"
  std::string_view text;
  /// Its name in a list.
  std::string_view title;
};

/// The kind of the question whether a site may download several files.
inline constexpr std::string_view downloadsKind = "downloads";

std::span<const PermissionWish> permissionWishes();

/// What the request is for; nothing for what no page gets.
std::optional<PermissionWish> wishOf(WebKitPermissionRequest* request);

}  // namespace platform
