#include "Platform/Gtk/DesktopPictures.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/WholeFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>
#include <vector>

#include <gio/gio.h>

namespace platform {

namespace {

constexpr std::size_t mostSettingsBytes = std::size_t{4} << 20U;

struct MarkupDeleter {
  void operator()(GMarkupParseContext* context) const { g_markup_parse_context_free(context); }
};

/// A path out of what is stored: an address of a file, or the path itself.
std::optional<std::string> pathOf(const std::string& stored) {
  if (stored.starts_with("/")) return stored;
  if (!stored.starts_with("file:")) return std::nullopt;
  const GStringPtr path(g_filename_from_uri(stored.c_str(), nullptr, nullptr));
  if (!path) return std::nullopt;
  return std::string(path.get());
}

/// What a scheme of settings says, if there is such a scheme and such a key.
std::optional<std::string> setting(const char* schemaName, const char* key) {
  auto* source = g_settings_schema_source_get_default();
  if (source == nullptr) return std::nullopt;
  auto* schema = g_settings_schema_source_lookup(source, schemaName, TRUE);
  if (schema == nullptr) return std::nullopt;
  std::optional<std::string> value;
  if (g_settings_schema_has_key(schema, key)) {
    const auto settings = GObjectPtr<GSettings>::adopt(g_settings_new(schemaName));
    const GVariantPtr stored(g_settings_get_value(settings.get(), key));
    if (g_variant_is_of_type(stored.get(), G_VARIANT_TYPE_STRING))
      value = g_variant_get_string(stored.get(), nullptr);
  }
  g_settings_schema_unref(schema);
  return value;
}

std::optional<std::string> pictureOfSettings(const char* schema, const char* key) {
  if (setting(schema, "picture-options") == "none") return std::nullopt;
  const auto stored = setting(schema, key);
  return stored ? pathOf(*stored) : std::nullopt;
}

std::optional<std::string> textIn(const std::filesystem::path& file) {
  auto contents = readWholeFile(file, mostSettingsBytes);
  if (!contents) return std::nullopt;
  return std::move(contents->bytes);
}

std::optional<std::string> gnomePicture(bool isDark) {
  constexpr const char* schema = "org.gnome.desktop.background";
  if (isDark) {
    if (auto dark = pictureOfSettings(schema, "picture-uri-dark")) return dark;
  }
  return pictureOfSettings(schema, "picture-uri");
}

std::optional<std::string> xfcePicture(const DesktopMonitor& monitor) {
  constexpr const char* channel = "xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml";
  std::vector<std::filesystem::path> folders = {g_get_user_config_dir()};
  for (const auto* const* folder = g_get_system_config_dirs(); *folder != nullptr; ++folder)
    folders.emplace_back(*folder);
  for (const auto& folder : folders) {
    const auto text = textIn(folder / channel);
    if (!text) continue;
    if (auto picture = xfceDesktopPicture(*text, monitor)) return picture;
  }
  return std::nullopt;
}

std::optional<std::string> plasmaPicture(const DesktopMonitor& monitor) {
  const auto text =
      textIn(std::filesystem::path(g_get_user_config_dir()) / "plasma-org.kde.plasma.desktop-appletsrc");
  if (!text) return std::nullopt;
  auto picture = plasmaDesktopPicture(*text, monitor);
  std::error_code error;
  if (picture && std::filesystem::is_directory(*picture, error))
    return pictureOfPackage(*picture, monitor.isDark);
  return picture;
}

/// The channel's properties with a value, by their whole names.
using XfceProperties = std::map<std::string, std::string>;

struct XfceReading {
  std::vector<std::string> names;
  XfceProperties properties;
};

const char* attribute(const char** names, const char** values, std::string_view wanted) {
  for (std::size_t i = 0; names[i] != nullptr; ++i) {
    if (names[i] == wanted) return values[i];
  }
  return nullptr;
}

void startProperty(GMarkupParseContext*, const char* element, const char** names, const char** values,
                   gpointer data, GError**) {
  auto& reading = *static_cast<XfceReading*>(data);
  const char* name = attribute(names, values, "name");
  const bool isProperty = std::string_view(element) == "property" && name != nullptr;
  reading.names.emplace_back(isProperty ? std::string("/") + name : std::string());
  const char* value = attribute(names, values, "value");
  if (!isProperty || value == nullptr) return;
  std::string whole;
  for (const auto& part : reading.names) whole += part;
  reading.properties[whole] = value;
}

void endProperty(GMarkupParseContext*, const char*, gpointer data, GError**) {
  static_cast<XfceReading*>(data)->names.pop_back();
}

struct Slide {
  bool isInside = false;
  std::string path;
};

bool isSlide(std::string_view element) {
  return element == "file" || element == "size" || element == "from" || element == "to";
}

struct PlasmaDesktop {
  std::string screen;
  std::string plugin = "org.kde.image";
  /// By the plugin.
  std::map<std::string, std::string> images;
};

/// "[a][b]" as a and b.
std::vector<std::string> partsOfGroup(std::string_view line) {
  std::vector<std::string> parts;
  while (line.starts_with('[')) {
    const auto end = line.find(']');
    if (end == std::string_view::npos) return {};
    parts.emplace_back(line.substr(1, end - 1));
    line.remove_prefix(end + 1);
  }
  return parts;
}

}  // namespace

std::optional<std::string> xfceDesktopPicture(std::string_view channel, const DesktopMonitor& monitor) {
  XfceReading reading;
  constexpr GMarkupParser parser = {startProperty, endProperty, nullptr, nullptr, nullptr};
  const std::unique_ptr<GMarkupParseContext, MarkupDeleter> context(
      g_markup_parse_context_new(&parser, GMarkupParseFlags(0), &reading, nullptr));
  if (!g_markup_parse_context_parse(context.get(), channel.data(), static_cast<gssize>(channel.size()),
                                    nullptr)) {
    return std::nullopt;
  }
  // Monitors bear their connection's name since some years, before that a number.
  for (const auto& name : {monitor.connector, std::to_string(monitor.number), std::string("0")}) {
    if (name.empty()) continue;
    const auto start = "/backdrop/screen0/monitor" + name + "/";
    for (auto it = reading.properties.lower_bound(start);
         it != reading.properties.end() && it->first.starts_with(start); ++it) {
      const auto& [key, value] = *it;
      if (!key.ends_with("/last-image") && !key.ends_with("/image-path")) continue;
      const auto style = reading.properties.find(key.substr(0, key.rfind('/')) + "/image-style");
      if (style != reading.properties.end() && style->second == "0") continue;
      if (auto path = pathOf(value)) return path;
    }
  }
  return std::nullopt;
}

std::optional<std::string> plasmaDesktopPicture(std::string_view applets, const DesktopMonitor& monitor) {
  std::map<std::string, PlasmaDesktop> desktops;
  std::vector<std::string> group;
  while (!applets.empty()) {
    const auto end = std::min(applets.find('\n'), applets.size());
    const auto line = applets.substr(0, end);
    applets.remove_prefix(std::min(end + 1, applets.size()));
    if (line.starts_with('[')) group = partsOfGroup(line);
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || group.size() < 2 || group[0] != "Containments") continue;
    const auto key = line.substr(0, equals);
    const std::string value(line.substr(equals + 1));
    auto& desktop = desktops[group[1]];
    if (group.size() == 2 && key == "lastScreen") desktop.screen = value;
    if (group.size() == 2 && key == "wallpaperplugin") desktop.plugin = value;
    const bool isWallpaper = group.size() == 5 && group[2] == "Wallpaper" && group[4] == "General";
    if (isWallpaper && key == "Image") desktop.images[group[3]] = value;
  }
  std::optional<std::string> any;
  for (const auto& [name, desktop] : desktops) {
    const auto image = desktop.images.find(desktop.plugin);
    if (image == desktop.images.end()) continue;
    auto path = pathOf(image->second);
    if (!path) continue;
    if (desktop.screen == std::to_string(monitor.number)) return path;
    if (!any) any = std::move(path);
  }
  return any;
}

std::optional<std::string> pictureOfPackage(const std::string& folder, bool isDark) {
  constexpr int wideEnough = 800;
  for (const char* images : {isDark ? "contents/images_dark" : "contents/images", "contents/images"}) {
    std::optional<std::string> best;
    int bestWidth = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder + "/" + images, error)) {
      int width = 0;
      int height = 0;
      if (std::sscanf(entry.path().filename().c_str(), "%dx%d", &width, &height) != 2) continue;
      const bool isBetter =
          bestWidth < wideEnough ? width > bestWidth : width >= wideEnough && width < bestWidth;
      if (!isBetter) continue;
      best = entry.path().string();
      bestWidth = width;
    }
    if (best) return best;
  }
  return std::nullopt;
}

std::optional<std::string> firstSlide(std::string_view slideShow) {
  Slide slide;
  constexpr GMarkupParser parser = {
      [](GMarkupParseContext*, const char* element, const char**, const char**, gpointer data, GError**) {
        static_cast<Slide*>(data)->isInside = isSlide(element);
      },
      [](GMarkupParseContext*, const char*, gpointer data, GError**) {
        static_cast<Slide*>(data)->isInside = false;
      },
      [](GMarkupParseContext*, const char* text, gsize length, gpointer data, GError**) {
        auto& found = *static_cast<Slide*>(data);
        if (!found.isInside || !found.path.empty()) return;
        const GStringPtr copy(g_strndup(text, length));
        if (const auto path = pathOf(g_strstrip(copy.get()))) found.path = *path;
      },
      nullptr, nullptr};
  const std::unique_ptr<GMarkupParseContext, MarkupDeleter> context(
      g_markup_parse_context_new(&parser, GMarkupParseFlags(0), &slide, nullptr));
  // Only its beginning may be there.
  g_markup_parse_context_parse(context.get(), slideShow.data(), static_cast<gssize>(slideShow.size()),
                               nullptr);
  if (slide.path.empty()) return std::nullopt;
  return slide.path;
}

std::optional<std::string> desktopPicture(const DesktopMonitor& monitor) {
  if (isDesktop("X-Cinnamon")) return pictureOfSettings("org.cinnamon.desktop.background", "picture-uri");
  if (isDesktop("MATE")) return pictureOfSettings("org.mate.background", "picture-filename");
  if (isDesktop("XFCE")) return xfcePicture(monitor);
  if (isDesktop("KDE")) return plasmaPicture(monitor);
  if (isDesktop("GNOME") || isDesktop("Unity") || isDesktop("Budgie")) return gnomePicture(monitor.isDark);
  return std::nullopt;
}

}  // namespace platform
