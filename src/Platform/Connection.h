#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace platform {

/// Keeps something attached, an observer or a monitor or a stream of events, for as long as it lives: what
/// attaches hands one out, and who wants to hear keeps it. It may end in the middle of being told.
class [[nodiscard]] Connection {
 public:
  /// Of nothing.
  Connection() = default;
  /// Whoever is attached is looked for behind a weak pointer to `attached`, which this alone keeps.
  explicit Connection(std::shared_ptr<const void> attached) noexcept : attached_(std::move(attached)) {}
  /// Of something that has to be told when it ends; `ended` is called once.
  static Connection endingWith(std::function<void()> ended) {
    return Connection(
        std::shared_ptr<const void>(nullptr, [ended = std::move(ended)](const void*) { ended(); }));
  }
  Connection(Connection&&) noexcept = default;
  Connection& operator=(Connection&&) noexcept = default;

  explicit operator bool() const noexcept { return attached_.use_count() > 0; }
  /// Before its time.
  void end() noexcept { attached_.reset(); }

 private:
  std::shared_ptr<const void> attached_;
};

}  // namespace platform
