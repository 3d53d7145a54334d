#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/WebEngine.h"

#include <memory>

#include <webkit/webkit.h>

namespace platform {

/// A small window for what a page opened by script, such as a sign-in. It owns itself, and lives until the
/// page or the user closes it or its process dies. Main thread.
class PageWindow {
 public:
  /// The view of a new window, for the engine to load into. It comes up when the page is ready.
  /// `teach` gives it the manners of its opener.
  static WebKitWebView* open(WebKitWebView* opener, WebEngine& engine,
                             void (*teach)(WebKitWebView*, WebEngine&));

  PageWindow(const PageWindow&) = delete;
  PageWindow& operator=(const PageWindow&) = delete;

 private:
  friend std::default_delete<PageWindow>;
  PageWindow(WebKitWebView* opener, WebEngine& engine);
  ~PageWindow();
  void show();
  void retitle();
  void closeLater();

  WebEngine& engine_;
  GObjectPtr<WebKitWebView> view_;
  GtkWindow* window_;
  /// The strip that says where the page is.
  GtkWidget* place_ = nullptr;
  GtkWidget* lock_ = nullptr;
  GtkWidget* address_ = nullptr;
  std::shared_ptr<void> pin_;
  guint closing_ = 0;
};

}  // namespace platform
