#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "gtk/GtkFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <adwaita.h>
#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

/// A letter that fills its place: its middle has the text's own colour, whatever the smoothing of edges.
constexpr const char* filled = "████";

using Pixel = std::array<double, 3>;

double luminance(const Pixel& pixel) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(pixel[0]) + 0.7152 * linear(pixel[1]) + 0.0722 * linear(pixel[2]);
}

double contrast(const Pixel& a, const Pixel& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

/// What the texts are seen on, in a window as the popover's.
class ContrastTest : public GtkFixture, public testing::WithParamInterface<bool> {
 protected:
  ContrastTest() { setScheme(GetParam() ? ADW_COLOR_SCHEME_FORCE_DARK : ADW_COLOR_SCHEME_FORCE_LIGHT); }
  ~ContrastTest() override {
    hosting_.reset();
    setScheme(ADW_COLOR_SCHEME_DEFAULT);
  }

  /// The strongest contrast of the view's pixels with what it stands on.
  double of(const View& view) {
    if (window != nullptr) {
      gtk_window_set_child(window, nullptr);
      gtk_window_destroy(window);
    }
    hosting_ = std::make_unique<GtkHostingView>(view.font(SystemFont{24}).padding(EdgeInsets::all(20)));
    // Before it is painted first.
    gtk_widget_add_css_class(hosting_->widget(), "velkin-popover");
    show(hosting_->widget(), 300, 120);
    std::vector<Pixel> pixels;
    EXPECT_TRUE(wait([&] { return !(pixels = seen()).empty() && strongest(pixels) > 1.2; }));
    return pixels.empty() ? 0 : strongest(pixels);
  }

 private:
  static void setScheme(AdwColorScheme scheme) {
    adw_init();
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), scheme);
  }

  /// Of the text's colour, the one that stands out most, with each colour that fills a tenth or more behind
  /// it.
  static double strongest(const std::vector<Pixel>& pixels) {
    std::map<Pixel, std::size_t> counts;
    for (const auto& pixel : pixels) ++counts[pixel];
    const auto& behind =
        std::max_element(counts.begin(), counts.end(), [](const auto& one, const auto& other) {
          return one.second < other.second;
        })->first;
    const auto& ink = std::max_element(counts.begin(), counts.end(), [&](const auto& one, const auto& other) {
                        return contrast(behind, one.first) < contrast(behind, other.first);
                      })->first;
    double least = contrast(behind, ink);
    for (const auto& [colour, count] : counts) {
      const bool isBehind = contrast(behind, colour) < 1.5 && count * 10 > pixels.size();
      if (isBehind) least = std::min(least, contrast(colour, ink));
    }
    return least;
  }

  /// The window's pixels but for its edges, as the display has them.
  std::vector<Pixel> seen() {
    auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
    auto* display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
    const int width = gtk_widget_get_width(GTK_WIDGET(window));
    const int height = gtk_widget_get_height(GTK_WIDGET(window));
    constexpr int edge = 4;
    XImage* image = XGetImage(display, gdk_x11_surface_get_xid(surface), edge, edge,
                              static_cast<unsigned>(width - 2 * edge),
                              static_cast<unsigned>(height - 2 * edge), AllPlanes, ZPixmap);
    if (image == nullptr) return {};
    const auto part = [](unsigned long pixel, unsigned long mask) {
      return static_cast<double>(pixel & mask) / static_cast<double>(mask);
    };
    std::vector<Pixel> pixels;
    for (int y = 0; y < image->height; ++y) {
      for (int x = 0; x < image->width; ++x) {
        const auto pixel = XGetPixel(image, x, y);
        pixels.push_back(
            {part(pixel, image->red_mask), part(pixel, image->green_mask), part(pixel, image->blue_mask)});
      }
    }
    XDestroyImage(image);
    return pixels;
  }

  std::unique_ptr<GtkHostingView> hosting_;
};

constexpr double least = 4.5;

TEST_P(ContrastTest, TextsBesideTheMainOnesCanBeRead) {
  EXPECT_GE(of(Text(filled).foregroundColor(Color::Role::secondary)), least);
}

TEST_P(ContrastTest, WhatWasNotFoundAndOtherErrorsCanBeRead) {
  EXPECT_GE(of(Text(filled).foregroundColor(Color::Role::red)), least);
}

TEST_P(ContrastTest, AFieldsPlaceholderCanBeRead) {
  const State<std::string> text{std::string()};
  EXPECT_GE(of(TextField(filled, text.binding())), least);
  EXPECT_GE(of(TextField(filled, text.binding(), {.isPlain = true})), least);
}

TEST_P(ContrastTest, APromptThatIsOffCanBeRead) {
  const State<std::string> text{std::string(filled)};
  EXPECT_GE(of(TextField("Prompt", text.binding(), {.isPlain = true}).disabled(true)), least);
}

INSTANTIATE_TEST_SUITE_P(Schemes, ContrastTest, testing::Values(false, true),
                         [](const auto& scheme) { return scheme.param ? "dark" : "light"; });

}  // namespace
}  // namespace platform
