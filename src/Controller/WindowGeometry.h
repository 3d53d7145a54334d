#pragma once

#include "Controller/PopoverContent.h"
#include "Controller/Sidebars.h"

namespace velkin {

/// The window's size, in steps along two scales, and the pages' zoom, along a third. Each step is stored and
/// takes effect at once. Main thread.
class WindowGeometry {
 public:
  WindowGeometry(PopoverContent& content, Sidebars& sidebars) : content_(content), sidebars_(sidebars) {}

  /// Points.
  void updateWindowSize(double width, double height);
  /// `direction` along the scale, which grows. At its end nothing happens.
  void stepHeight(int direction, const char* logLine);
  void stepWidth(int direction, const char* logLine);
  bool isFullScreen() const;
  /// To the full size, or back to the size before it.
  void toggleFullScreen();

  /// `direction` along the scale, which shrinks.
  void stepZoom(int direction, const char* logLine);
  void setZoom(double zoom);
  /// Of the page in the main place, without storing.
  void updateCurrentZoom(double zoom);

 private:
  void storeSize(double width, double height) const;
  void showExpandOverlay();

  PopoverContent& content_;
  Sidebars& sidebars_;
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
