#include "Platform/Gtk/PopoverWindow.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/NSApplication.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

/// The active window is unclear for some milliseconds whenever the focus moves, also among our own windows.
constexpr double focusSettlingTime = 0.08;
/// A tray that takes the focus at a press reports the click this much later at the most.
constexpr double sameClickTime = 0.25;
/// How long a tray takes from a press on the icon to telling us of it.
constexpr double trayAnswerTime = 0.25;
/// How long the presses are followed after the popover closed by itself, to know whether a click on the tray
/// that follows is the press that closed it.
constexpr double pressMemory = 3.0;
/// How long the window may be out of sight until it is in its place.
constexpr double veilTime = 0.3;
/// Out of sight: of a window without any, the toolkit would paint nothing, and the desktop not see it.
constexpr double veiled = 0.01;
/// How often a window that the desktop doesn't show is asked for once more.
constexpr int mostTimesMissing = 3;

}  // namespace

PopoverWindow::PopoverWindow(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

PopoverWindow::~PopoverWindow() {
  isAlive_.end();
  if (window_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(window_, this);
  controller_.reset();
  gtk_window_destroy(window_);
}

void PopoverWindow::setContentSize(NSSize size) {
  if (size == size_) return;
  size_ = size;
  if (isShown_ && window_ != nullptr && !WindowSystem::present().placesWindows() && !isOrdinaryWindow_) {
    // A key that is released while the window is off the screen would stay pressed for us.
    if (std::exchange(isPlacedAnewSoon_, true)) return;
    whenKeysAreUp([this, alive = isAlive_.watch()] {
      if (!alive) return;
      isPlacedAnewSoon_ = false;
      if (isShown_) placeAnew();
    });
  } else if (isShown_) {
    place(false);
  } else if (window_ != nullptr && gtk_widget_get_visible(GTK_WIDGET(window_))) {
    // It is being closed, and may be opened again in this very turn.
    resizesWhenHidden_ = true;
  } else if (window_ != nullptr) {
    resizeHidden();
  }
}

void PopoverWindow::resizeHidden() {
  gtk_window_set_default_size(window_, static_cast<int>(size_.width), static_cast<int>(size_.height));
  if (!gtk_widget_get_realized(GTK_WIDGET(window_))) return;
  // The toolkit keeps the size that a window was realized with, whatever is asked for before it is shown.
  gtk_widget_unrealize(GTK_WIDGET(window_));
  gtk_widget_realize(GTK_WIDGET(window_));
}

void PopoverWindow::setContentViewController(std::shared_ptr<NSViewController> controller) {
  const auto earlier = std::exchange(controller_, std::move(controller));
  surroundings_.whenToolkitReady([this, alive = isAlive_.watch(), expected = controller_.get()] {
    if (alive && controller_.get() == expected) {
      prepare();
      installContent();
    }
  });
}

void PopoverWindow::prepare() {
  ensureWindow();
  // From here the window has its place in the window system; showing it is one request.
  gtk_widget_realize(GTK_WIDGET(window_));
}

void PopoverWindow::ensureWindow() {
  if (window_ != nullptr) return;
  window_ = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window_, "Velkin");
  gtk_window_set_decorated(window_, FALSE);
  // Before the window is realized: until it is shown, a later size would not be taken.
  gtk_window_set_default_size(window_, static_cast<int>(size_.width), static_cast<int>(size_.height));
  gtk_window_set_hide_on_close(window_, TRUE);
  gtk_widget_add_css_class(GTK_WIDGET(window_), "velkin-popover");
  watchKeys(window_);
  content_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_window_set_child(window_, toasts_.wrap(content_));
  g_signal_connect(window_, "realize", G_CALLBACK(+[](GtkWidget* window, gpointer self) {
                     g_signal_connect(gtk_native_get_surface(GTK_NATIVE(window)), "layout",
                                      G_CALLBACK(+[](GdkSurface*, int width, int height, gpointer popover) {
                                        static_cast<PopoverWindow*>(popover)->onLaidOut(width, height);
                                      }),
                                      self);
                   }),
                   this);
  g_signal_connect_swapped(window_, "map", G_CALLBACK(+[](PopoverWindow* self) { self->onMapped(); }), this);
  g_signal_connect_swapped(window_, "notify::is-active",
                           G_CALLBACK(+[](PopoverWindow* self) { self->onActiveChanged(); }), this);
  g_signal_connect(window_, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer self) -> gboolean {
                     static_cast<PopoverWindow*>(self)->hide();
                     return TRUE;
                   }),
                   this);
}

void PopoverWindow::installContent() {
  GtkWidget* wanted = nullptr;
  if (controller_) {
    auto* view = dynamic_cast<GtkViewBase*>(&controller_->view());
    if (view != nullptr) wanted = view->widget();
  }
  GtkWidget* present = gtk_widget_get_first_child(content_);
  if (present == wanted) return;
  if (present != nullptr) gtk_box_remove(GTK_BOX(content_), present);
  if (wanted == nullptr) return;
  gtk_widget_set_hexpand(wanted, TRUE);
  gtk_widget_set_vexpand(wanted, TRUE);
  gtk_box_append(GTK_BOX(content_), wanted);
}

PixelRect PopoverWindow::wantedPlace() const {
  const auto& system = WindowSystem::present();
  std::size_t primary = 0;
  const auto monitors = system.monitors(primary);
  const auto struts = system.struts();
  const int scale = system.scale();
  const int width = static_cast<int>(std::lround(size_.width)) * scale;
  const int height = static_cast<int>(std::lround(size_.height)) * scale;
  // For a moment there may be none, while displays are plugged.
  if (monitors.empty()) return {0, 0, width, height};
  if (isOrdinaryWindow_) return placeInMiddle(width, height, monitors, struts, primary);
  // A key press says nothing of where the icon is.
  auto anchor = system.iconPlace(surroundings_.anchor(), !isOpenedByHotKey_);
  const bool isOnScreen = anchor && std::any_of(monitors.begin(), monitors.end(), [&](const auto& m) {
                            return m.contains(anchor->x, anchor->y);
                          });
  if (!isOnScreen) anchor.reset();
  return placeAtIcon(anchor, width, height, monitors, struts, primary);
}

void PopoverWindow::place(bool beforeMap) {
  if (window_ == nullptr) return;
  const auto& system = WindowSystem::present();
  if (!system.placesWindows()) {
    fitWhereOthersPlace();
    return;
  }
  // It may have been, before the desktop told of its screens.
  if (system.placesLater() && gtk_window_is_maximized(window_)) gtk_window_unmaximize(window_);
  const auto rect = wantedPlace();
  const int scale = system.scale();
  gtk_window_set_default_size(window_, rect.width / scale, rect.height / scale);
  if (beforeMap) {
    system.setPositionHint(window_, {rect.x, rect.y});
  } else {
    moveToPlace(false);
    movesAtSize_ = {rect.width / scale, rect.height / scale};
  }
}

void PopoverWindow::moveToPlace(bool isForClick) {
  const auto& system = WindowSystem::present();
  if (isOrdinaryWindow_) {
    const auto rect = wantedPlace();
    system.move(window_, {rect.x, rect.y});
    return;
  }
  const auto wanted = [this, alive = isAlive_.watch()]() -> std::optional<PixelPoint> {
    if (!alive || !isShown_ || isOrdinaryWindow_) return std::nullopt;
    const auto rect = wantedPlace();
    // The room may be another than was known when the window was asked for.
    const int scale = WindowSystem::present().scale();
    gtk_window_set_default_size(window_, rect.width / scale, rect.height / scale);
    return PixelPoint{rect.x, rect.y};
  };
  // A tray that says nothing of the place says (0, 0).
  std::optional<PixelPoint> click;
  if (isForClick) click = surroundings_.anchor().value_or(PixelPoint{});
  const auto done = [this, alive = isAlive_.watch()] {
    if (alive) unveil();
  };
  // On a busy machine sway at times doesn't hear of a window in its X server, and does of the same once more.
  const auto missing = [this, alive = isAlive_.watch()] {
    if (!alive || !isShown_ || ++timesMissing_ > mostTimesMissing) return;
    debugLog("PopoverWindow", "moveToPlace(_:)", "The desktop doesn't show the popover: asked once more");
    placeAnew();
  };
  system.placeAtIcon(window_, {wanted, click, done, missing});
}

void PopoverWindow::unveil() {
  veilTimer_.reset();
  gtk_widget_set_opacity(GTK_WIDGET(window_), 1);
}

void PopoverWindow::onLaidOut(int width, int height) {
  // Some window managers keep a window on the screen, and move one that isn't as small yet as it was told to
  // be.
  if (!isShown_ || movesAtSize_ != std::pair{width, height}) return;
  movesAtSize_.reset();
  moveToPlace(false);
}

void PopoverWindow::placeAnew() {
  // A compositor finds a place for a window when it appears, and leaves one that grows where it is, beyond
  // the screen's edge if it comes to that.
  gtk_widget_set_visible(GTK_WIDGET(window_), FALSE);
  awaitsKeyboard_ = true;
  place(true);
  gtk_window_present(window_);
}

void PopoverWindow::fitWhereOthersPlace() {
  NSSize screen;
  GListModel* monitors = gdk_display_get_monitors(gtk_widget_get_display(GTK_WIDGET(window_)));
  for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i)));
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor.get(), &area);
    screen = {std::max<double>(screen.width, area.width), std::max<double>(screen.height, area.height)};
  }
  const bool isFull = size_.width >= screen.width && size_.height >= screen.height;
  gtk_window_set_default_size(window_, static_cast<int>(std::min(size_.width, screen.width)),
                              static_cast<int>(std::min(size_.height, screen.height)));
  // A window of a fixed size floats where others are tiled. What the panels leave, only the compositor knows.
  gtk_window_set_resizable(window_, isFull || isOrdinaryWindow_);
  if (isFull) {
    gtk_window_maximize(window_);
  } else {
    gtk_window_unmaximize(window_);
  }
}

void PopoverWindow::show(NSRect, NSStatusBarButton&, NSRectEdge) {
  if (isShown_) return;
  isShown_ = true;
  surroundings_.whenToolkitReady([this, alive = isAlive_.watch()] {
    if (!alive || !isShown_) return;
    ensureWindow();
    installContent();
    if (gtk_widget_get_visible(GTK_WIDGET(window_))) {
      // Closed in this very turn, to change what it shows: it never left the screen, nor the keyboard it.
      if (std::exchange(resizesWhenHidden_, false)) place(false);
      return;
    }
    isOrdinaryWindow_ = !surroundings_.hasTray();
    const auto* activation = presentActivation();
    isOpenedByHotKey_ = activation != nullptr && !activation->isClick;
    const auto& event = NSApp().currentEvent;
    isOpenedByClick_ = event && event->type == NSEvent::EventType::leftMouseUp;
    gtk_window_set_decorated(window_, isOrdinaryWindow_);
    gtk_widget_realize(GTK_WIDGET(window_));
    WindowSystem::present().setSkipsTaskbar(window_, !isOrdinaryWindow_);
    WindowSystem::present().setIsDialog(window_, !isOrdinaryWindow_);
    place(true);
    isClosedByLastPress_ = false;
    awaitsKeyboard_ = false;
    timesMissing_ = 0;
    if (!isOrdinaryWindow_ && WindowSystem::present().placesLater()) {
      // It isn't to be seen jumping.
      gtk_widget_set_opacity(GTK_WIDGET(window_), veiled);
      veilTimer_ = DispatchQueue::main().timer(veilTime, [this] { unveil(); });
    }
    presentWindow(window_);
  });
}

void PopoverWindow::onMapped() {
  const auto& system = WindowSystem::present();
  // The toolkit rewrites the hints around mapping, and window managers read them before or after: so once
  // more.
  moveToPlace(std::exchange(isOpenedByClick_, false));
  if (isOrdinaryWindow_ || !system.placesWindows()) return;
  system.keepAbove(window_);
  watcherTimer_.reset();
  isNamedActive_ = system.isActive(window_);
  watcher_ = system.watch({[this](bool isOverOwnWindow) { onPressed(isOverOwnWindow); },
                           [this](bool isOurs) { onActiveWindowNamed(isOurs); }});
}

void PopoverWindow::onPressed(bool isOverOwnWindow) {
  isClosedByLastPress_ = false;
  if (!isShown_ || isOverOwnWindow || !closesByItself()) return;
  // A press on our icon may be the one that calls up the menu, and under that the popover stays.
  pressTimer_ = DispatchQueue::main().timer(trayAnswerTime, [this] {
    if (!isShown_ || !closesByItself()) return;
    isClosedByLastPress_ = true;
    closeByItself();
  });
}

void PopoverWindow::onActiveWindowNamed(bool isOurs) {
  isNamedActive_ = isNamedActive_ || isOurs;
  if (!isOurs && isShown_)
    focusTimer_ = DispatchQueue::main().timer(focusSettlingTime, [this] { lookWhereTheUserWent(); });
}

bool PopoverWindow::closesByItself() const {
  // An ordinary window that vanished would be hard to find again.
  return behavior == Behavior::transient && !isOrdinaryWindow_ && !isKeptOpen();
}

void PopoverWindow::onActiveChanged() {
  focusTimer_.reset();
  if (gtk_window_is_active(window_)) awaitsKeyboard_ = false;
  if (!isShown_ || gtk_window_is_active(window_)) return;
  // Menus, drop-downs and other programs' key grabs take the focus away for a moment: look again when it
  // settled.
  focusTimer_ = DispatchQueue::main().timer(focusSettlingTime, [this] { lookWhereTheUserWent(); });
}

void PopoverWindow::lookWhereTheUserWent() {
  if (!isShown_ || !closesByItself() || awaitsKeyboard_) return;
  const bool isActive = gtk_window_is_active(window_) != FALSE;
  if (WindowSystem::present().isActiveWindowOurs()) {
    if (isActive) return;
    focusTimer_ = DispatchQueue::main().timer(focusSettlingTime, [this] { lookWhereTheUserWent(); });
    return;
  }
  // The toolkit takes the window for the active one as long as X has the pointer over it, and within a
  // Wayland session X doesn't hear of the pointer's leaving. The window manager knows better, if it names
  // active windows at all.
  if (isActive && !isNamedActive_) return;
  closeByItself();
}

void PopoverWindow::closeByItself() {
  closedByItselfAt_ = now();
  hide();
}

bool PopoverWindow::wasClosedByThisClick() const {
  return isClosedByLastPress_ || now() - closedByItselfAt_ < sameClickTime;
}

std::shared_ptr<void> PopoverWindow::keepOpen() {
  pin();
  return {pins_.get(), [pins = pins_](void*) { --*pins; }};
}

std::shared_ptr<void> PopoverWindow::keepOpenUnlessClosed() {
  ++*loosePins_;
  return {loosePins_.get(), [pins = loosePins_](void*) { --*pins; }};
}

void PopoverWindow::performClose() {
  if (isShown_ && *pins_ == 0) hide();
}

void PopoverWindow::hide() {
  if (!isShown_) return;
  isShown_ = false;
  focusTimer_.reset();
  pressTimer_.reset();
  // In a later turn: who closes it to show something else in it opens it again in this one.
  DispatchQueue::main().async([this, alive = isAlive_.watch()] {
    if (alive && !isShown_) leaveTheScreen();
  });
}

void PopoverWindow::leaveTheScreen() {
  if (window_ != nullptr) {
    gtk_widget_set_visible(GTK_WIDGET(window_), FALSE);
    // A size that was asked for while it was closing.
    if (std::exchange(resizesWhenHidden_, false)) resizeHidden();
  }
  // A closed popover leaves nothing running.
  watcherTimer_ = DispatchQueue::main().timer(pressMemory, [this] {
    watcher_.reset();
    isClosedByLastPress_ = false;
  });
}

}  // namespace platform
