#include "Platform/Gtk/DesktopPictures.h"
#include "Platform/Gtk/GtkImage.h"
#include "gtk/GtkFixture.h"
#include "unit/TemporaryFolder.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace platform {
namespace {

using velkin::TemporaryFolder;
using velkin::writeFile;

constexpr const char* xfceChannel = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-desktop" version="1.0">
  <property name="backdrop" type="empty">
    <property name="screen0" type="empty">
      <property name="monitorDP-1" type="empty">
        <property name="workspace0" type="empty">
          <property name="image-style" type="int" value="5"/>
          <property name="last-image" type="string" value="/pictures/one &amp; two.jpg"/>
        </property>
      </property>
      <property name="monitorHDMI-1" type="empty">
        <property name="workspace0" type="empty">
          <property name="last-image" type="string" value="/pictures/other.jpg"/>
        </property>
      </property>
      <property name="monitorVGA-1" type="empty">
        <property name="workspace0" type="empty">
          <property name="image-style" type="int" value="0"/>
          <property name="last-image" type="string" value="/pictures/hidden.jpg"/>
        </property>
      </property>
      <property name="monitor0" type="empty">
        <property name="image-path" type="string" value="/pictures/old.jpg"/>
      </property>
    </property>
  </property>
</channel>)";

TEST(DesktopPicturesTest, XfceKeepsAPictureForEachMonitor) {
  EXPECT_EQ(xfceDesktopPicture(xfceChannel, {"DP-1"}), "/pictures/one & two.jpg");
  EXPECT_EQ(xfceDesktopPicture(xfceChannel, {"HDMI-1"}), "/pictures/other.jpg");
  // Told to show none, the monitor has what all have.
  EXPECT_EQ(xfceDesktopPicture(xfceChannel, {"VGA-1"}), "/pictures/old.jpg");
  EXPECT_EQ(xfceDesktopPicture(xfceChannel, {"", 3}), "/pictures/old.jpg");
}

TEST(DesktopPicturesTest, AChannelThatIsNoChannelHasNone) {
  for (const auto* text : {"", "<", "no markup", "<channel></property>", "<channel name=\"x\"/>"})
    EXPECT_EQ(xfceDesktopPicture(text, {"DP-1"}), std::nullopt) << text;
}

constexpr const char* plasmaApplets = R"([ActionPlugins][0]
RightButton;NoModifier=org.kde.contextmenu

[Containments][1]
lastScreen=0
plugin=org.kde.plasma.folder
wallpaperplugin=org.kde.image

[Containments][1][Wallpaper][org.kde.color][General]
Image=/pictures/never.png

[Containments][1][Wallpaper][org.kde.image][General]
Image=file:///pictures/with%20blank.png

[Containments][7]
lastScreen=1

[Containments][7][Wallpaper][org.kde.image][General]
Image=/pictures/Package/

[Containments][9]
lastScreen=2
wallpaperplugin=org.kde.color
)";

TEST(DesktopPicturesTest, PlasmaKeepsAPictureForEachScreen) {
  EXPECT_EQ(plasmaDesktopPicture(plasmaApplets, {"", 0}), "/pictures/with blank.png");
  EXPECT_EQ(plasmaDesktopPicture(plasmaApplets, {"", 1}), "/pictures/Package/");
  EXPECT_EQ(plasmaDesktopPicture("", {"", 0}), std::nullopt);
  EXPECT_EQ(plasmaDesktopPicture("[Containments][1\nImage=/x\n[]=[]\n", {"", 0}), std::nullopt);
}

TEST(DesktopPicturesTest, OfAPackageTheSmallestThatIsLargeEnoughIsTaken) {
  const TemporaryFolder folder;
  const auto images = folder.path() / "contents" / "images";
  std::filesystem::create_directories(images);
  for (const auto* name : {"400x300.png", "5120x2880.png", "1280x800.png", "readme"})
    writeFile(images / name, "");
  EXPECT_EQ(pictureOfPackage(folder.path().string(), false), (images / "1280x800.png").string());
  EXPECT_EQ(pictureOfPackage(folder.path().string(), true), (images / "1280x800.png").string());
  EXPECT_EQ(pictureOfPackage("/nowhere", false), std::nullopt);
}

TEST(DesktopPicturesTest, OfASlideShowTheFirstSlideIsTaken) {
  EXPECT_EQ(firstSlide("<background><static><duration>1</duration><file>/a.jpg</file></static>"
                       "<static><file>/b.jpg</file></static></background>"),
            "/a.jpg");
  EXPECT_EQ(firstSlide("<background><static><file><size width=\"1\" height=\"1\"> /c.jpg </size></file>"),
            "/c.jpg");
  EXPECT_EQ(firstSlide("<background/>"), std::nullopt);
  EXPECT_EQ(firstSlide("nothing"), std::nullopt);
}

class ImageTest : public GtkFixture {
 protected:
  static constexpr NSSize size{388, 220};

  /// The picture of a file: nothing until it is told, nullptr if it is none.
  std::shared_ptr<NSImage> load(const std::string& path) {
    std::optional<std::shared_ptr<NSImage>> result;
    loadImage(path, size, [&](std::shared_ptr<NSImage> image) { result = std::move(image); });
    EXPECT_FALSE(result) << "in a later turn";
    EXPECT_TRUE(wait([&] { return result.has_value(); }));
    return result.value_or(nullptr);
  }
  std::string save(const char* name, int width, int height) {
    auto* picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
    gdk_pixbuf_fill(picture, 0x336699ff);
    auto path = (folder.path() / name).string();
    const bool isJpeg = path.ends_with(".jpg");
    EXPECT_TRUE(gdk_pixbuf_save(picture, path.c_str(), isJpeg ? "jpeg" : "png", nullptr, nullptr));
    g_object_unref(picture);
    return path;
  }
  std::string write(const char* name, std::string_view text) {
    writeFile(folder.path() / name, text);
    return (folder.path() / name).string();
  }

  TemporaryFolder folder;
};

TEST_F(ImageTest, APictureOfAnySizeAsksForTheSizeInWhichItIsShown) {
  for (const auto& path :
       {save("small.png", 3, 2), save("large.jpg", 4000, 3000), save("high.png", 300, 900),
        write("drawing.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20'/>")}) {
    const auto image = load(path);
    ASSERT_NE(image, nullptr) << path;
    EXPECT_EQ(image->frame().size, size);
    int width = 0;
    int height = 0;
    auto* widget = dynamic_cast<GtkViewBase&>(*image).widget();
    gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &width, nullptr, nullptr);
    gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, -1, nullptr, &height, nullptr, nullptr);
    EXPECT_EQ(width, 388) << path;
    EXPECT_EQ(height, 220) << path;
  }
}

TEST_F(ImageTest, WhatIsNoPictureIsNeverWaitedForAndIsNone) {
  const auto pipe = (folder.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& path :
       {pipe, folder.path().string(), std::string("/dev/zero"), std::string("/nowhere"),
        write("text.jpg", "no picture"), write("empty.png", ""), save("line.png", 1, 3000)})
    EXPECT_EQ(load(path), nullptr) << path;
}

TEST_F(ImageTest, OfASlideShowTheFirstPictureIsShown) {
  const auto picture = save("one.png", 50, 40);
  EXPECT_NE(load(write("show.xml", "<background><static><file>" + picture + "</file></static></background>")),
            nullptr);
  // One that shows itself has an end.
  const auto self = (folder.path() / "self.xml").string();
  EXPECT_EQ(load(write("self.xml", "<background><static><file>" + self + "</file></static></background>")),
            nullptr);
}

}  // namespace
}  // namespace platform
