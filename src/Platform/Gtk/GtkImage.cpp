#include "Platform/Gtk/GtkImage.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/DesktopPictures.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkMainQueue.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/LogText.h"
#include "Platform/WholeFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtk/gtk.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::int64_t mostRead = std::int64_t{256} << 20U;
/// A photograph of 12,000 pixels each way, and a little more.
constexpr double mostPixels = 1.5e8;
/// So far a picture may differ from the shape that is wanted: one of a pixel's height would be scaled to a
/// million of pixels' width.
constexpr double mostOverhang = 16;
constexpr std::size_t slideShowBytes = std::size_t{1} << 16U;

using Pixbuf = GObjectPtr<GdkPixbuf>;

struct PixelSize {
  int width = 0;
  int height = 0;
};

/// A picture's size when it just covers `wanted`; nothing if that would be out of all proportion.
std::optional<PixelSize> covering(PixelSize picture, PixelSize wanted) {
  const double scale = std::max(static_cast<double>(wanted.width) / picture.width,
                                static_cast<double>(wanted.height) / picture.height);
  const PixelSize size{static_cast<int>(std::min(1e6, std::ceil(picture.width * scale - 1e-6))),
                       static_cast<int>(std::min(1e6, std::ceil(picture.height * scale - 1e-6)))};
  if (size.width > wanted.width * mostOverhang || size.height > wanted.height * mostOverhang)
    return std::nullopt;
  return size;
}

FileDescriptor openPicture(const std::string& path) {
  // Not blocking: opening a pipe would wait for somebody to write into it.
  FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size > mostRead) {
    return {};
  }
  return file;
}

/// The file itself, or the first one that it shows in turn.
FileDescriptor openFirstPicture(const std::string& path) {
  auto file = openPicture(path);
  if (!file.isOpen() || !path.ends_with(".xml")) return file;
  std::string text(slideShowBytes, '\0');
  const auto count = read(file.number(), text.data(), text.size());
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  const auto slide = firstSlide(text);
  return slide ? openPicture(*slide) : FileDescriptor();
}

struct Wish {
  PixelSize size;
  bool isRefused = false;
};

void sizePrepared(GdkPixbufLoader* loader, int width, int height, Wish* wish) {
  const auto size = width > 0 && height > 0 ? covering({width, height}, wish->size) : std::nullopt;
  wish->isRefused = !size || static_cast<double>(width) * height > mostPixels;
  if (!wish->isRefused) gdk_pixbuf_loader_set_size(loader, size->width, size->height);
}

Pixbuf decode(const FileDescriptor& file, PixelSize size) {
  Wish wish{size};
  const auto loader = GObjectPtr<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new());
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(sizePrepared), &wish);
  std::array<guchar, std::size_t{1} << 16U> buffer;
  bool isRead = true;
  std::int64_t total = 0;
  for (;;) {
    const auto count = read(file.number(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count == 0) break;
    total += std::max<ssize_t>(count, 0);
    // A file may grow while it is read.
    isRead = count > 0 && total <= mostRead &&
             gdk_pixbuf_loader_write(loader.get(), buffer.data(), static_cast<gsize>(count), nullptr) &&
             !wish.isRefused;
    if (!isRead) break;
  }
  const bool isWhole = gdk_pixbuf_loader_close(loader.get(), nullptr) != FALSE;
  if (!isRead || !isWhole || wish.isRefused) return {};
  return Pixbuf::retain(gdk_pixbuf_loader_get_pixbuf(loader.get()));
}

/// Exactly `size`: upright, covering, its middle.
Pixbuf fitted(const Pixbuf& decoded, PixelSize size) {
  auto picture = Pixbuf::adopt(gdk_pixbuf_apply_embedded_orientation(decoded.get()));
  if (!picture) return {};
  const PixelSize present{gdk_pixbuf_get_width(picture.get()), gdk_pixbuf_get_height(picture.get())};
  const auto wanted = covering(present, size);
  if (!wanted) return {};
  if (wanted->width != present.width || wanted->height != present.height) {
    picture = Pixbuf::adopt(
        gdk_pixbuf_scale_simple(picture.get(), wanted->width, wanted->height, GDK_INTERP_BILINEAR));
    if (!picture) return {};
  }
  const auto part =
      Pixbuf::adopt(gdk_pixbuf_new_subpixbuf(picture.get(), (wanted->width - size.width) / 2,
                                             (wanted->height - size.height) / 2, size.width, size.height));
  // The part alone: the whole isn't needed any more.
  return Pixbuf::adopt(gdk_pixbuf_copy(part.get()));
}

struct Loading {
  std::string path;
  NSSize points;
  PixelSize pixels;
  NSImage::Completion completion;
};

Pixbuf load(const Loading& loading) {
  const auto file = openFirstPicture(loading.path);
  if (!file.isOpen()) return {};
  const auto decoded = decode(file, loading.pixels);
  return decoded ? fitted(decoded, loading.pixels) : Pixbuf{};
}

class DecodedPicture : public NSImage, public GtkViewBase {
 public:
  DecodedPicture(GdkPixbuf* picture, NSSize size)
      : size_(size), root_(GObjectPtr<GtkWidget>::retain(gtk_overlay_new())) {
    const auto texture = GObjectPtr<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(picture));
    // A picture asks for as many points as it has pixels; so it lies over what has its size.
    GtkWidget* place = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_widget_set_size_request(place, static_cast<int>(size.width), static_cast<int>(size.height));
    gtk_overlay_set_child(GTK_OVERLAY(root_.get()), place);
    GtkWidget* shown = gtk_picture_new_for_paintable(GDK_PAINTABLE(texture.get()));
    gtk_picture_set_can_shrink(GTK_PICTURE(shown), TRUE);
    gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), shown);
  }
  ~DecodedPicture() override {
    if (GtkWidget* parent = gtk_widget_get_parent(root_.get()); parent != nullptr && GTK_IS_BOX(parent))
      gtk_box_remove(GTK_BOX(parent), root_.get());
  }
  DecodedPicture(const DecodedPicture&) = delete;
  DecodedPicture& operator=(const DecodedPicture&) = delete;

  GtkWidget* widget() override { return root_.get(); }
  NSRect frame() const override { return {{0, 0}, size_}; }

 private:
  NSSize size_;
  GObjectPtr<GtkWidget> root_;
};

void loaded(const Loading& loading, const Pixbuf& picture) {
  if (!picture) debugLog("GtkImage", "loadImage(_:)", "A picture can't be drawn");
  loading.completion(picture ? std::make_shared<DecodedPicture>(picture.get(), loading.points) : nullptr);
}

/// Of the display's densest monitor.
int pixelsPerPoint() {
  int scale = 1;
  GListModel* monitors = gdk_display_get_monitors(gdk_display_get_default());
  for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i)));
    scale = std::max(scale, gdk_monitor_get_scale_factor(monitor.get()));
  }
  return scale;
}

}  // namespace

void loadImage(const std::string& path, NSSize size, NSImage::Completion completion) {
  const int scale = pixelsPerPoint();
  const auto pixels = [scale](double points) {
    return std::max(1, static_cast<int>(std::lround(points)) * scale);
  };
  auto loading = std::make_shared<const Loading>(
      Loading{path, size, {pixels(size.width), pixels(size.height)}, std::move(completion)});
  const auto tell = [](std::shared_ptr<const Loading> whose, Pixbuf picture) {
    GtkMainQueue().async(
        [whose = std::move(whose), picture = std::move(picture)] { loaded(*whose, picture); });
  };
  try {
    std::thread([loading, tell]() mutable {
      auto picture = load(*loading);
      tell(std::move(loading), std::move(picture));
    }).detach();
  } catch (const std::system_error&) {
    tell(std::move(loading), {});
  }
}

}  // namespace platform
