#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/NSHostingController.h"

#include <memory>

#include <gtk/gtk.h>

namespace platform {

/// A description as widgets. Main thread.
class GtkHostingView : public NSHostingView, public GtkViewBase {
 public:
  explicit GtkHostingView(View root);
  ~GtkHostingView() override;
  GtkHostingView(const GtkHostingView&) = delete;
  GtkHostingView& operator=(const GtkHostingView&) = delete;

  ViewHost& host() noexcept override { return *host_; }
  GtkWidget* widget() override { return root_.get(); }
  NSRect frame() const override;
  void makeFirstResponder() override;
  void addSubview(NSView& view, std::optional<NSSize> size) override;
  void removeSubview(NSView& view) override;

 private:
  GObjectPtr<GtkWidget> root_;
  GtkWidget* content_;
  std::unique_ptr<ViewHost> host_;
};

}  // namespace platform
