#include "Platform/Gtk/GtkPanel.h"

#include "Platform/Gtk/FreeMemory.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/NSScreen.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

/// About as much as window managers put above a window, within the place that it was given.
constexpr double titleHeight = 32;

/// Where the upper edge of a panel goes that is to be at `frame`: all of it is on the main screen, or at
/// least its title.
double onScreen(const NSRect& frame, bool hasTitle) {
  const auto screen = NSScreen::main();
  if (!screen) return frame.maxY();
  const auto& visible = screen->visibleFrame;
  const double height = frame.size.height + (hasTitle ? titleHeight : 0);
  return std::min(std::max(frame.maxY(), visible.minY() + height), visible.maxY());
}

}  // namespace

GtkPanel::GtkPanel(NSRect contentRect, std::uint32_t styleMask)
    : frame_(contentRect), styleMask_(styleMask) {}

GtkPanel::~GtkPanel() {
  if (window_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(window_, this);
  controller_.reset();
  gtk_window_destroy(window_);
}

NSRect GtkPanel::frame() const {
  NSRect now = frame_;
  if (controller_ && controller_->isViewLoaded()) {
    const auto size = controller_->view().frame().size;
    now.size.width = std::max(now.size.width, size.width);
    now.size.height = std::max(now.size.height, size.height);
  }
  return now;
}

void GtkPanel::setFrameOrigin(NSPoint origin) {
  frame_.origin = origin;
  if (isVisible_) moveToFrame(false);
}

void GtkPanel::setTitle(std::string title) {
  title_ = std::move(title);
  if (window_ != nullptr) gtk_window_set_title(window_, title_.c_str());
}

void GtkPanel::setContentViewController(std::shared_ptr<NSViewController> controller) {
  controller_ = std::move(controller);
  if (controller_) controller_->view();
  if (window_ != nullptr) installContent();
}

void GtkPanel::ensureWindow() {
  if (window_ != nullptr) return;
  window_ = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window_, title_.c_str());
  const bool hasFrame = (styleMask_ & closable) != 0;
  gtk_window_set_decorated(window_, hasFrame);
  gtk_window_set_resizable(window_, FALSE);
  gtk_widget_add_css_class(GTK_WIDGET(window_), "velkin-panel");
  if (!hasFrame) {
    gtk_widget_add_css_class(GTK_WIDGET(window_), "frameless");
    // Where windows are not composed, what is outside of a round corner would be black.
    if (gdk_display_is_composited(gtk_widget_get_display(GTK_WIDGET(window_)))) {
      gtk_widget_add_css_class(GTK_WIDGET(window_), "rounded");
      gtk_widget_set_overflow(GTK_WIDGET(window_), GTK_OVERFLOW_HIDDEN);
    }
  }
  watchKeys(window_);
  g_signal_connect(window_, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer self) -> gboolean {
                     static_cast<GtkPanel*>(self)->close();
                     return TRUE;
                   }),
                   this);
  g_signal_connect_swapped(window_, "map", G_CALLBACK(+[](GtkPanel* self) { self->onMapped(); }), this);
  installContent();
}

void GtkPanel::installContent() {
  auto* view = controller_ ? dynamic_cast<GtkViewBase*>(&controller_->view()) : nullptr;
  // In a box of its own: a view leaves its window by leaving a box.
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_set_size_request(box, static_cast<int>(frame_.size.width), static_cast<int>(frame_.size.height));
  if (view != nullptr) gtk_box_append(GTK_BOX(box), view->widget());
  gtk_window_set_child(window_, box);
}

void GtkPanel::moveToFrame(bool beforeMap) {
  const auto& system = WindowSystem::present();
  std::size_t primary = 0;
  const auto monitors = system.monitors(primary);
  if (monitors.empty()) return;
  const auto& monitor =
      monitors[mainMonitor_.value_or(system.mainMonitor().value_or(primary)) % monitors.size()];
  const int scale = system.scale();
  // The program counts from the bottom left; the window system from the top left. The frame's own height: a
  // content that is higher, or becomes so, hangs down from the same edge.
  const double top = onScreen(frame_, (styleMask_ & closable) != 0);
  const PixelPoint place{monitor.x + static_cast<int>(std::lround(frame_.origin.x)) * scale,
                         monitor.y + monitor.height - static_cast<int>(std::lround(top)) * scale};
  if (beforeMap) {
    system.setPositionHint(window_, place);
  } else {
    system.move(window_, place);
  }
}

void GtkPanel::onMapped() {
  moveToFrame(false);
  if (isFloating_) WindowSystem::present().keepAbove(window_);
}

void GtkPanel::makeKeyAndOrderFront() {
  ensureWindow();
  gtk_widget_realize(GTK_WIDGET(window_));
  const auto& system = WindowSystem::present();
  system.setSkipsTaskbar(window_, true);
  // Or a desktop that tiles its windows would tile this one.
  system.setIsDialog(window_, true);
  mainMonitor_ = system.mainMonitor();
  moveToFrame(true);
  isVisible_ = true;
  presentWindow(window_);
}

void GtkPanel::close() {
  if (!isVisible_) return;
  // The delegate may let go of what is inside; the panel itself stays its owner's.
  if (delegate != nullptr) delegate->windowWillClose(*this);
  isVisible_ = false;
  if (window_ != nullptr) gtk_widget_set_visible(GTK_WIDGET(window_), FALSE);
  // A panel may have shown much.
  giveFreeMemoryBackLater();
}

}  // namespace platform
