#pragma once

#include <cerrno>
#include <ctime>

#include <signal.h>

namespace platform {

/// While it lives, `signal` isn't delivered to this thread, and what came meanwhile is forgotten: the call
/// that would have raised it fails with its error instead. For this thread only: who started the process may
/// want the signal elsewhere. Leaves `errno` as it is.
class SignalBlock {
 public:
  explicit SignalBlock(int signal) noexcept : number_(signal) {
    sigemptyset(&signal_);
    sigaddset(&signal_, signal);
    pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  ~SignalBlock() {
    if (sigismember(&before_, number_) == 1) return;
    const auto error = errno;
    const timespec now{};
    while (sigtimedwait(&signal_, nullptr, &now) == -1 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
  }
  SignalBlock(const SignalBlock&) = delete;
  SignalBlock& operator=(const SignalBlock&) = delete;

 private:
  int number_;
  sigset_t signal_{};
  sigset_t before_{};
};

}  // namespace platform
