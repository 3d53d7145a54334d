#pragma once

#include <functional>
#include <utility>

namespace velkin::KeyboardShortcuts {

/// What happens to a shortcut's key.
enum class EventType { keyDown, keyUp };

/// A stream of events that runs for as long as this object lives: whoever wants the events keeps it, and ends
/// the stream by destroying it. The consumer given at its making is called with each event as it comes. Main
/// thread.
class [[nodiscard]] EventStream {
 public:
  EventStream() = default;
  explicit EventStream(std::function<void()> end) : end_(std::move(end)) {}
  ~EventStream() { stop(); }
  EventStream(EventStream&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  EventStream& operator=(EventStream&& other) noexcept {
    if (this != &other) {
      stop();
      end_ = std::exchange(other.end_, nullptr);
    }
    return *this;
  }

  /// Ends it before its time.
  void stop() {
    if (const auto end = std::exchange(end_, nullptr)) end();
  }

 private:
  std::function<void()> end_;
};

}  // namespace velkin::KeyboardShortcuts
