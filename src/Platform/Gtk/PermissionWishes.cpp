#include "Platform/Gtk/PermissionWishes.h"

#include <array>

namespace platform {

namespace {

constexpr std::array wishes = {
    PermissionWish{"camera", "use your camera", "Camera"},
    PermissionWish{"microphone", "use your microphone", "Microphone"},
    PermissionWish{"camera-and-microphone", "use your camera and your microphone", "Camera and microphone"},
    PermissionWish{"screen", "see your screen", "Screen"},
    PermissionWish{"location", "know your location", "Location"},
    PermissionWish{"notifications", "show notifications", "Notifications"},
    PermissionWish{"clipboard", "read the clipboard", "Clipboard"},
    PermissionWish{"website-data", "use the data that it keeps while you visit other sites",
                   "Its data on other sites"},
    PermissionWish{downloadsKind, "download several files", "Several downloads"},
};

std::string_view kindOf(WebKitPermissionRequest* request) {
  if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request)) return "location";
  if (WEBKIT_IS_NOTIFICATION_PERMISSION_REQUEST(request)) return "notifications";
  if (WEBKIT_IS_CLIPBOARD_PERMISSION_REQUEST(request)) return "clipboard";
  if (WEBKIT_IS_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request)) return "website-data";
  if (!WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request)) return "";
  auto* media = WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request);
  if (webkit_user_media_permission_is_for_display_device(media)) return "screen";
  const bool wantsCamera = webkit_user_media_permission_is_for_video_device(media);
  if (wantsCamera && webkit_user_media_permission_is_for_audio_device(media)) return "camera-and-microphone";
  return wantsCamera ? "camera" : "microphone";
}

}  // namespace

std::span<const PermissionWish> permissionWishes() { return wishes; }

std::optional<PermissionWish> wishOf(WebKitPermissionRequest* request) {
  const auto kind = kindOf(request);
  for (const auto& wish : wishes) {
    if (wish.kind == kind) return wish;
  }
  return std::nullopt;
}

}  // namespace platform
