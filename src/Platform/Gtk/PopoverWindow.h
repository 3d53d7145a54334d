#pragma once

#include "Platform/Alive.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/ToastHost.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/NSPopover.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <gtk/gtk.h>

namespace platform {

/// The popover as a window of its own: at the tray icon where there is one, an ordinary window in the middle
/// of the screen where there is none. Its window is made when it is first needed. Main thread.
class PopoverWindow : public NSPopover {
 public:
  struct Surroundings {
    /// True while a tray shows the icon.
    std::function<bool()> hasTray;
    /// Where the icon was clicked last, in device pixels; nothing if that isn't known.
    std::function<std::optional<PixelPoint>()> anchor;
    /// Runs work once the toolkit may be used, at once if it may be by now.
    std::function<void(std::function<void()>)> whenToolkitReady;
  };

  explicit PopoverWindow(Surroundings surroundings);
  ~PopoverWindow() override;
  PopoverWindow(const PopoverWindow&) = delete;
  PopoverWindow& operator=(const PopoverWindow&) = delete;

  NSSize contentSize() const override { return size_; }
  void setContentSize(NSSize size) override;
  std::shared_ptr<NSViewController> contentViewController() const override { return controller_; }
  void setContentViewController(std::shared_ptr<NSViewController> controller) override;
  bool isShown() const override { return isShown_; }
  void show(NSRect rect, NSStatusBarButton& view, NSRectEdge edge) override;
  void performClose() override;

  /// True if the click that is being handled has closed the popover already, by landing outside of it.
  bool wasClosedByThisClick() const;
  /// While at least one is open, going elsewhere closes nothing: a dialogue of ours has the user's attention.
  void pin() { ++*pins_; }
  void unpin() { --*pins_; }
  /// As `pin`, until the last copy of what this gives has gone. It may outlive this window.
  [[nodiscard]] std::shared_ptr<void> keepOpen();
  /// As `keepOpen`, but for the user's own closing: that goes before.
  [[nodiscard]] std::shared_ptr<void> keepOpenUnlessClosed();
  bool isKeptOpen() const noexcept { return *pins_ > 0 || *loosePins_ > 0; }
  /// The window; nullptr before its first need.
  GtkWindow* window() const noexcept { return window_; }
  void showNotice(const std::string& text) override { toasts_.show(text); }
  ToastHost& toasts() noexcept { return toasts_; }
  /// Makes the window, so that its first opening need not wait for it.
  void prepare();

 private:
  void ensureWindow();
  void installContent();
  void place(bool beforeMap);
  void placeAnew();
  void fitWhereOthersPlace();
  void resizeHidden();
  PixelRect wantedPlace() const;
  void moveToPlace(bool isForClick);
  void unveil();
  void onMapped();
  void onLaidOut(int width, int height);
  void onPressed(bool isOverOwnWindow);
  void onActiveChanged();
  void onActiveWindowNamed(bool isOurs);
  void lookWhereTheUserWent();
  void closeByItself();
  bool closesByItself() const;
  void hide();
  void leaveTheScreen();

  Surroundings surroundings_;
  NSSize size_{600, 600};
  std::shared_ptr<NSViewController> controller_;
  Alive isAlive_;
  GtkWindow* window_ = nullptr;
  GtkWidget* content_ = nullptr;
  ToastHost toasts_;
  std::unique_ptr<Timer> focusTimer_;
  std::unique_ptr<Timer> pressTimer_;
  std::unique_ptr<Timer> watcherTimer_;
  std::unique_ptr<Timer> veilTimer_;
  std::unique_ptr<WindowSystem::Watcher> watcher_;
  double closedByItselfAt_ = 0;
  bool isClosedByLastPress_ = false;
  bool isShown_ = false;
  bool isOrdinaryWindow_ = false;
  bool isOpenedByHotKey_ = false;
  bool isOpenedByClick_ = false;
  /// How often it was asked for once more, since the desktop didn't show it.
  int timesMissing_ = 0;
  /// The window manager has said that one of ours is the active window.
  bool isNamedActive_ = false;
  bool isPlacedAnewSoon_ = false;
  /// It was put on the screen anew, and the keyboard hasn't come back to it yet.
  bool awaitsKeyboard_ = false;
  bool resizesWhenHidden_ = false;
  /// The size, in points, at which the window is moved once more to its place.
  std::optional<std::pair<int, int>> movesAtSize_;
  std::shared_ptr<int> pins_ = std::make_shared<int>(0);
  std::shared_ptr<int> loosePins_ = std::make_shared<int>(0);
};

}  // namespace platform
