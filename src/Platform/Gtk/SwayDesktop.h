#pragma once

#include "Platform/Alive.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/SwayFrames.h"
#include "Platform/SwayLayout.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// sway, which puts floating windows in the middle wherever they ask to be, X programs' too; but it takes
/// commands from other programs, and tells them of its screens. Nobody waits for its answers: a sway that
/// gives none, or others than it should, leaves everything as it is where there is no sway. Main thread.
class SwayDesktop {
 public:
  /// That of the session; nullptr where the session's compositor is another.
  static SwayDesktop* present();

  /// By its socket's path.
  explicit SwayDesktop(std::string socket) : socket_(std::move(socket)) {}
  SwayDesktop(const SwayDesktop&) = delete;
  SwayDesktop& operator=(const SwayDesktop&) = delete;

  /// As it was told of last; nothing before the first answer, and behind an answer that didn't come.
  const std::optional<SwayLayout>& layout() const noexcept { return layout_; }
  /// Asks for the layout.
  void refresh();

  /// The icon's place by what the tray told of the last click, failing that by where the pointer was when
  /// `place` asked for it.
  std::optional<PixelPoint> icon(std::optional<PixelPoint> told) const;

  /// Puts the window that `criteria` stand for where `placing` wants it, as soon as it is on the screen, by
  /// the layout as it is then, and takes off what sway puts around windows.
  void place(std::string criteria, std::string title, WindowSystem::Placing placing);

 private:
  struct Run;
  using Answers = std::vector<std::string>;

  void ask(std::vector<SwayMessage> messages, std::function<void(const Answers&)> whenAnswered,
           std::function<void()> whenNot);
  bool readLayout(const Answers& answers);
  void begin(const std::shared_ptr<Run>& run);
  void askForPointer(const std::shared_ptr<Run>& run);
  void move(const std::shared_ptr<Run>& run);
  void again(const std::shared_ptr<Run>& run, void (SwayDesktop::*step)(const std::shared_ptr<Run>&));
  void tellOfFailure();

  std::string socket_;
  std::optional<SwayLayout> layout_;
  std::optional<PixelPoint> iconByPointer_;
  bool hasToldOfFailure_ = false;
  Alive isAlive_;
};

}  // namespace platform
