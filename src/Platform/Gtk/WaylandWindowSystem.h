#pragma once

#include "Platform/Gtk/WindowSystem.h"

namespace platform {

class SwayDesktop;

/// A Wayland compositor, or anything else that isn't X11: all is left to it, but for the windows at the icon
/// where it is sway.
class WaylandWindowSystem : public WindowSystem {
 public:
  /// `sway` is the compositor, or nullptr if that is another.
  explicit WaylandWindowSystem(SwayDesktop* sway = nullptr) : sway_(sway) {}
  bool placesWindows() const override;
  std::vector<PixelRect> monitors(std::size_t& primary) const override;
  std::vector<Strut> struts() const override;
  std::optional<std::size_t> mainMonitor() const override;
  int scale() const override { return 1; }
  std::optional<PixelPoint> pointer() const override { return std::nullopt; }
  bool knowsPointer() const override { return false; }
  NSPoint pixelOfClick(NSPoint told) const override { return told; }
  std::vector<NSScreen> screens() const override;
  std::optional<double> panelLuminance() const override { return std::nullopt; }
  void setSkipsTaskbar(GtkWindow*, bool) const override {}
  void setIsDialog(GtkWindow* window, bool isDialog) const override;
  void setPositionHint(GtkWindow*, PixelPoint) const override {}
  void move(GtkWindow*, PixelPoint) const override {}
  void placeAtIcon(GtkWindow* window, Placing placing) const override;
  bool placesLater() const override { return placesWindows(); }
  std::optional<PixelPoint> iconPlace(std::optional<PixelPoint> told, bool mayBeAtPointer) const override;
  void keepAbove(GtkWindow*) const override {}
  void present(GtkWindow* window, const Activation& activation) const override;
  bool isActive(GtkWindow*) const override { return false; }
  bool isActiveWindowOurs() const override { return false; }
  std::optional<int> numberOf(GtkWindow*) const override { return std::nullopt; }
  std::unique_ptr<Watcher> watch(Watcher::Events) const override { return nullptr; }
  int keyboardGroup() const override { return 0; }
  bool tellsOfSuper() const override { return false; }
  bool isClipboardUntold(GdkClipboard*) const override { return false; }
  // What is read comes through a pipe, which ends with its reader.
  void endClipboardRequests(GdkClipboard*) const override {}
  void nameProgram(const char* identifier) const override;

 private:
  std::optional<NSPoint> cornerOf(const NSScreen& screen) const override;

  SwayDesktop* sway_;
};

}  // namespace platform
