#pragma once

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
  GtkWidget* widget() override { return root_; }
  NSRect frame() const override;
  void makeFirstResponder() override;

 private:
  GtkWidget* root_;
  std::unique_ptr<ViewHost> host_;
};

}  // namespace platform
