#pragma once

#include "Platform/Gtk/WindowSystem.h"

namespace platform {

class SwayDesktop;
struct SwayLayout;

/// X11, by the calls of `X11Desktop`; also that which a Wayland session has for programs that want it.
class X11WindowSystem : public WindowSystem {
 public:
  /// `sway` is the compositor that the X server is in, or nullptr.
  explicit X11WindowSystem(SwayDesktop* sway = nullptr) : sway_(sway) {}
  bool placesWindows() const override { return true; }
  std::vector<PixelRect> monitors(std::size_t& primary) const override;
  std::vector<Strut> struts() const override;
  std::optional<std::size_t> mainMonitor() const override;
  int scale() const override;
  std::optional<PixelPoint> pointer() const override;
  bool knowsPointer() const override;
  NSPoint pixelOfClick(NSPoint told) const override;
  std::vector<NSScreen> screens() const override;
  std::optional<double> panelLuminance() const override;
  void setSkipsTaskbar(GtkWindow* window, bool skips) const override;
  void setIsDialog(GtkWindow* window, bool isDialog) const override;
  void setPositionHint(GtkWindow* window, PixelPoint position) const override;
  void move(GtkWindow* window, PixelPoint position) const override;
  void placeAtIcon(GtkWindow* window, Placing placing) const override;
  bool placesLater() const override;
  std::optional<PixelPoint> iconPlace(std::optional<PixelPoint> told, bool mayBeAtPointer) const override;
  void keepAbove(GtkWindow* window) const override;
  void present(GtkWindow* window, const Activation& activation) const override;
  bool isActive(GtkWindow* window) const override;
  bool isActiveWindowOurs() const override;
  std::optional<int> numberOf(GtkWindow* window) const override;
  std::unique_ptr<Watcher> watch(Watcher::Events events) const override;
  int keyboardGroup() const override;
  bool tellsOfSuper() const override { return true; }
  bool isClipboardUntold(GdkClipboard* board) const override;
  void endClipboardRequests(GdkClipboard* board) const override;
  void nameProgram(const char*) const override {}

 private:
  std::optional<NSPoint> cornerOf(const NSScreen& screen) const override;
  /// nullptr where there is none, or it isn't known.
  const SwayLayout* swayLayout() const;

  SwayDesktop* sway_;
};

}  // namespace platform
