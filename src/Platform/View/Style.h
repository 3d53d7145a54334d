#pragma once

#include <limits>
#include <optional>

namespace platform {

/// The length that takes all there is.
inline constexpr double infinity = std::numeric_limits<double>::infinity();

enum class Axis { horizontal, vertical, depth };
enum class Alignment { leading, center, trailing, top, bottom, fill };
enum class ButtonStyle { bordered, borderless, prominent, link };
/// `radioRow` is a radio group side by side.
enum class PickerStyle { menu, segmented, radioGroup, radioRow };
/// `none` is for what only decorates: assistive tools pass over it.
enum class AccessibilityRole {
  none,
  alert,
  button,
  group,
  heading,
  image,
  link,
  list,
  listItem,
  status,
  toolbar
};

/// Sizes and weights as the desktop sets them for each role.
enum class Font {
  body,
  callout,
  caption,
  caption2,
  footnote,
  headline,
  largeTitle,
  monospaced,
  subheadline,
  title,
  title2,
  title3
};

/// The size in points of text in a role, before the user's own scaling.
constexpr double preferredPointSize(Font role) noexcept {
  switch (role) {
    case Font::largeTitle:
      return 26;
    case Font::title:
      return 22;
    case Font::title2:
      return 17;
    case Font::title3:
      return 15;
    case Font::callout:
      return 12;
    case Font::subheadline:
      return 11;
    case Font::caption:
    case Font::caption2:
    case Font::footnote:
      return 10;
    case Font::body:
    case Font::headline:
    case Font::monospaced:
      break;
  }
  return 13;
}

enum class FontWeight { regular, light, medium, bold };
enum class FontDesign { standard, monospaced };

/// The desktop's font at a size of one's own.
struct SystemFont {
  double size = preferredPointSize(Font::body);
  FontWeight weight = FontWeight::regular;
  FontDesign design = FontDesign::standard;
  bool operator==(const SystemFont&) const = default;
};

/// A colour by its role, which follows the desktop's appearance, or by its components.
struct Color {
  enum class Role {
    primary,
    secondary,
    accent,
    blue,
    orange,
    purple,
    red,
    green,
    gray,
    /// Of text on the accent colour.
    selectedText,
    clear,
    windowBackground,
    underPageBackground,
    fixed
  };

  Role role = Role::primary;
  double opacity = 1;
  double red = 0;
  double green = 0;
  double blue = 0;

  constexpr Color(Role colorRole, double colorOpacity = 1) : role(colorRole), opacity(colorOpacity) {}
  static constexpr Color rgb(double red, double green, double blue, double opacity = 1) {
    Color color(Role::fixed, opacity);
    color.red = red;
    color.green = green;
    color.blue = blue;
    return color;
  }
  bool operator==(const Color&) const = default;
};

struct EdgeInsets {
  double top = 0;
  double leading = 0;
  double bottom = 0;
  double trailing = 0;

  static constexpr EdgeInsets all(double length) { return {length, length, length, length}; }
  static constexpr EdgeInsets horizontal(double length) { return {0, length, 0, length}; }
  static constexpr EdgeInsets vertical(double length) { return {length, 0, length, 0}; }
  EdgeInsets operator+(const EdgeInsets& o) const {
    return {top + o.top, leading + o.leading, bottom + o.bottom, trailing + o.trailing};
  }
  bool operator==(const EdgeInsets&) const = default;
};

/// A wish for a size, in points. A fixed length is both the least and the most; `infinity` as a maximum takes
/// what the container has left.
struct Frame {
  std::optional<double> width;
  std::optional<double> height;
  std::optional<double> minWidth;
  std::optional<double> minHeight;
  std::optional<double> maxWidth;
  std::optional<double> maxHeight;
  std::optional<Alignment> alignment;
  bool operator==(const Frame&) const = default;
};

}  // namespace platform
