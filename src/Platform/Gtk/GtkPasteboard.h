#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/NSPasteboard.h"

#include <memory>

#include <gtk/gtk.h>

namespace platform {

/// The desktop's clipboard. Without a display it takes nothing and has nothing.
class GtkPasteboard : public NSPasteboard {
 public:
  GtkPasteboard();
  ~GtkPasteboard() override;
  GtkPasteboard(const GtkPasteboard&) = delete;
  GtkPasteboard& operator=(const GtkPasteboard&) = delete;

  void clearContents() override;
  bool setString(const std::string& text, std::string_view type) override;
  void readItems(Completion completion) override;

 private:
  struct Reading;
  struct Queue;
  std::shared_ptr<Queue> queue_;
  /// What stands for nothing.
  GObjectPtr<GdkContentProvider> nothing_;
};

}  // namespace platform
