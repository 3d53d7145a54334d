#include "Platform/Gtk/GtkStyle.h"

#include "Platform/Gtk/Toolkit.h"

#include <cmath>
#include <map>
#include <sstream>

namespace platform {

namespace {

/// Still 4.5 to 1 on each of the style's backgrounds.
constexpr double secondaryStrength = 0.78;

std::string cssColor(const Color& color) {
  // The palette's names belong to the desktop's style, so they follow light and dark by themselves.
  std::ostringstream css;
  css.imbue(std::locale::classic());
  css << "alpha(";
  switch (color.role) {
    case Color::Role::primary:
    case Color::Role::secondary:
      css << "@window_fg_color";
      break;
    case Color::Role::accent:
      css << "@accent_bg_color";
      break;
    case Color::Role::blue:
      css << "@blue_3";
      break;
    case Color::Role::orange:
      css << "@orange_4";
      break;
    case Color::Role::purple:
      css << "@purple_3";
      break;
    case Color::Role::red:
      css << "@error_color";
      break;
    case Color::Role::green:
      css << "@success_color";
      break;
    case Color::Role::selectedText:
      css << "@accent_fg_color";
      break;
    case Color::Role::gray:
      css << "@light_5";
      break;
    case Color::Role::clear:
      css << "transparent";
      break;
    case Color::Role::windowBackground:
      css << "@window_bg_color";
      break;
    case Color::Role::underPageBackground:
      css << "@headerbar_bg_color";
      break;
    case Color::Role::fixed:
      css << "rgb(" << std::lround(color.red * 255) << "," << std::lround(color.green * 255) << ","
          << std::lround(color.blue * 255) << ")";
      break;
  }
  css << "," << color.opacity * (color.role == Color::Role::secondary ? secondaryStrength : 1.0) << ")";
  return css.str();
}

std::string declarations(const Modifiers& modifiers) {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  if (modifiers.background) css << "background-color:" << cssColor(*modifiers.background) << ";";
  if (modifiers.border) css << "border:1px solid " << cssColor(*modifiers.border) << ";";
  if (modifiers.background || modifiers.border) {
    const auto& p = modifiers.padding;
    css << "padding:" << p.top << "px " << p.trailing << "px " << p.bottom << "px " << p.leading << "px;";
  }
  if (modifiers.cornerRadius) css << "border-radius:" << *modifiers.cornerRadius << "px;";
  if (modifiers.foreground) css << "color:" << cssColor(*modifiers.foreground) << ";";
  if (modifiers.font == Font::subheadline) css << "font-size:92%;";
  if (const auto& font = modifiers.systemFont) {
    // A point of the system's is a pixel at the usual density; "pt" lets the user's text scaling in.
    css << "font-size:" << font->size * 0.75 << "pt;";
    if (font->design == FontDesign::monospaced) css << "font-family:monospace;";
    if (font->weight == FontWeight::light) css << "font-weight:300;";
    if (font->weight == FontWeight::medium) css << "font-weight:500;";
    if (font->weight == FontWeight::bold) css << "font-weight:700;";
  }
  if (modifiers.isBold) css << "font-weight:bold;";
  return css.str();
}

/// The style's own classes for text of each role.
const char* classOf(Font font) {
  switch (font) {
    case Font::largeTitle:
      return "title-1";
    case Font::title:
      return "title-2";
    case Font::title2:
      return "title-3";
    case Font::headline:
      return "heading";
    case Font::title3:
      return "title-4";
    case Font::caption:
    case Font::caption2:
    case Font::footnote:
      return "caption";
    case Font::monospaced:
      return "monospace";
    case Font::body:
    case Font::callout:
    case Font::subheadline:
      break;
  }
  return nullptr;
}

/// What no view's look says: the edge of a window that has no frame, fields that are to look like text, text
/// that the style makes too faint to be read, and that a row goes on behind its edge. The window's edge is
/// neither black nor white, and no middle grey: a page may have the colour of what is behind the window, and
/// the edge still shows.
constexpr const char* basicRules = R"(
.velkin-popover,.velkin-panel.frameless{outline:1px solid alpha(mix(@window_bg_color,@window_fg_color,.68),.5);outline-offset:-1px;}
.velkin-panel.frameless.rounded{border-radius:12px;}
.velkin-popover placeholder,.velkin-panel placeholder{opacity:.78;}
.velkin-popover .dim-label,.velkin-panel .dim-label{opacity:.78;}
.plain-field:disabled,.plain-field:disabled>text,.plain-field:disabled placeholder{filter:none;opacity:1;}
.plain-field:disabled>text{color:alpha(@window_fg_color,.8);}
popover.velkin-square{padding:0;}
popover.velkin-square>contents{border-radius:0;box-shadow:none;margin:0;border:1px solid mix(@window_bg_color,@window_fg_color,.35);}
.velkin-row>undershoot.left,.velkin-row>undershoot.right{min-width:20px;}
.velkin-row>undershoot.left{background:linear-gradient(to right,@window_bg_color 25%,alpha(@window_bg_color,0));}
.velkin-row>undershoot.right{background:linear-gradient(to left,@window_bg_color 25%,alpha(@window_bg_color,0));}
.plain-field,.plain-field:focus-within{outline-style:none;box-shadow:none;padding:0;min-height:0;}
)";

/// One style sheet for the display, with a class for each look in use. Looks are few, so none is ever
/// dropped.
class LookSheet {
 public:
  static LookSheet& shared() {
    static LookSheet sheet;
    return sheet;
  }

  std::string className(const std::string& css) {
    if (css.empty()) return {};
    const auto [entry, isNew] = classes_.try_emplace(css, "look-" + std::to_string(classes_.size()));
    if (isNew) {
      text_ += "." + entry->second + "{" + css + "}\n";
      toolkit::loadStyle(provider_, text_);
    }
    return entry->second;
  }

 private:
  LookSheet() : provider_(gtk_css_provider_new()), text_(basicRules) {
    toolkit::loadStyle(provider_, text_);
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider_),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  }

  GtkCssProvider* provider_;
  std::string text_;
  std::map<std::string, std::string> classes_;
};

}  // namespace

void GtkStyle::apply(GtkWidget* widget, const Modifiers& modifiers) {
  const auto css = declarations(modifiers);
  const auto className = css.empty() ? std::string() : LookSheet::shared().className(css);
  if (className != className_) {
    if (!className_.empty()) gtk_widget_remove_css_class(widget, className_.c_str());
    if (!className.empty()) gtk_widget_add_css_class(widget, className.c_str());
    className_ = className;
  }
  const char* fontClass = modifiers.font ? classOf(*modifiers.font) : nullptr;
  if (fontClass != fontClass_) {
    if (fontClass_ != nullptr) gtk_widget_remove_css_class(widget, fontClass_);
    if (fontClass != nullptr) gtk_widget_add_css_class(widget, fontClass);
    fontClass_ = fontClass;
  }
}

void squareWhereNotComposed(GtkWidget* popover) {
  if (gdk_display_is_composited(gtk_widget_get_display(popover))) return;
  gtk_widget_add_css_class(popover, "velkin-square");
  gtk_popover_set_has_arrow(GTK_POPOVER(popover), FALSE);
}

}  // namespace platform
