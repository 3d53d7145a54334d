#pragma once

#include "Platform/NSPanel.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include <gtk/gtk.h>

namespace platform {

/// A panel as a window of its own, made when it is first shown. Main thread.
class GtkPanel : public NSPanel {
 public:
  GtkPanel(NSRect contentRect, std::uint32_t styleMask);
  ~GtkPanel() override;
  GtkPanel(const GtkPanel&) = delete;
  GtkPanel& operator=(const GtkPanel&) = delete;

  NSRect frame() const override;
  void setFrameOrigin(NSPoint origin) override;
  std::string title() const override { return title_; }
  void setTitle(std::string title) override;
  std::shared_ptr<NSViewController> contentViewController() const override { return controller_; }
  void setContentViewController(std::shared_ptr<NSViewController> controller) override;
  void setFloatingPanel(bool isFloating) override { isFloating_ = isFloating; }
  bool isVisible() const override { return isVisible_; }
  void makeKeyAndOrderFront() override;
  void close() override;

 private:
  void ensureWindow();
  void installContent();
  void onMapped();
  void moveToFrame(bool beforeMap);

  NSRect frame_;
  std::uint32_t styleMask_;
  std::string title_;
  std::shared_ptr<NSViewController> controller_;
  GtkWindow* window_ = nullptr;
  /// From which its place is counted: it is the main one until the panel itself has the keyboard.
  std::optional<std::size_t> mainMonitor_;
  bool isFloating_ = false;
  bool isVisible_ = false;
};

}  // namespace platform
