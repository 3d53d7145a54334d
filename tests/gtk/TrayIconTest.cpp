#include "Platform/Gtk/GObjectPtr.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

namespace platform {
namespace {

double luminance(double red, double green, double blue) {
  const auto linear = [](double part) {
    part /= 255;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

/// How much of the picture, of all that it paints (edges included, which are of neither colour), stands out
/// from a panel by 3 to 1 at the least.
double partThatStandsOut(const char* name, int size, double panel) {
  const auto file = std::string(VELKIN_ICONS) + "/" + name + ".svg";
  const auto picture =
      GObjectPtr<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file_at_size(file.c_str(), size, size, nullptr));
  if (!picture || gdk_pixbuf_get_has_alpha(picture.get()) == FALSE) return 0;
  const auto* pixels = gdk_pixbuf_read_pixels(picture.get());
  const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(picture.get()));
  int painted = 0;
  int seen = 0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const auto* pixel = pixels + static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x) * 4;
      constexpr int half = 128;
      if (pixel[3] < half) continue;
      ++painted;
      const auto [dark, light] = std::minmax({panel, luminance(pixel[0], pixel[1], pixel[2])});
      if ((light + 0.05) / (dark + 0.05) >= 3) ++seen;
    }
  }
  return painted == 0 ? 0 : static_cast<double>(seen) / painted;
}

TEST(TrayIconTest, TheOutlinedOneStandsOutFromAPanelOfAnyBrightness) {
  for (const int size : {16, 22, 24, 32}) {
    for (int grey = 0; grey <= 255; grey += 5) {
      EXPECT_GT(partThatStandsOut("velkin-diamondgear-outlined", size, luminance(grey, grey, grey)), 0.1)
          << size << " px on grey " << grey;
    }
    const double waybarsTray = luminance(0x29, 0x80, 0xb9);
    EXPECT_GT(partThatStandsOut("velkin-diamondgear-outlined", size, waybarsTray), 0.3);
    EXPECT_LT(partThatStandsOut("velkin-diamondgear-grey", size, waybarsTray), 0.01);
  }
}

}  // namespace
}  // namespace platform
