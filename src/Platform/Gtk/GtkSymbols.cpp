#include "Platform/Gtk/GtkSymbols.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAssets.h"

namespace platform {

namespace {

GtkIconTheme* desktopsTheme() {
  static GtkIconTheme* const theme = [] {
    auto* found = gtk_icon_theme_get_for_display(gdk_display_get_default());
    // Symbols take the colour of the text around them only if a theme finds them by their names.
    gtk_icon_theme_add_search_path(found, folderOfOwnSymbols().c_str());
    return found;
  }();
  return theme;
}

/// Themes that a desktop names may lack names, or not be installed at all. The package depends on this one.
GtkIconTheme* usualTheme() {
  static GtkIconTheme* const theme = [] {
    auto* made = gtk_icon_theme_new();
    gtk_icon_theme_set_theme_name(made, "Adwaita");
    return made;
  }();
  return theme;
}

constexpr int usualSize = 16;

}  // namespace

void showSymbol(GtkImage* image, const std::string& iconName) {
  if (gtk_icon_theme_has_icon(desktopsTheme(), iconName.c_str()) ||
      !gtk_icon_theme_has_icon(usualTheme(), iconName.c_str())) {
    gtk_image_set_from_icon_name(image, iconName.c_str());
    return;
  }
  auto* widget = GTK_WIDGET(image);
  const auto icon = GObjectPtr<GtkIconPaintable>::adopt(gtk_icon_theme_lookup_icon(
      usualTheme(), iconName.c_str(), nullptr, usualSize, gtk_widget_get_scale_factor(widget),
      gtk_widget_get_direction(widget), GTK_ICON_LOOKUP_FORCE_SYMBOLIC));
  gtk_image_set_from_paintable(image, GDK_PAINTABLE(icon.get()));
}

}  // namespace platform
