#include "Platform/PatientLock.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

namespace {

constexpr double wholePatience = 1;
constexpr double atOnce = 0.05;

FileError isHeldElsewhere() { return {EWOULDBLOCK, "another process holds its lock"}; }

}  // namespace

/// What the waiting thread shares with the lock, which may be gone before it.
struct PatientLock::Request {
  std::mutex mutex;
  std::condition_variable hasAnswer;
  std::optional<Answer> answer;
  /// `take` has gone on without the answer.
  bool isLate = false;

  /// Guards the function alone: it runs under it.
  std::mutex lateMutex;
  std::function<void(Answer)> whenLate;

  void deliver(Answer got) {
    {
      const std::lock_guard lock(mutex);
      if (!isLate) {
        answer.emplace(std::move(got));
        hasAnswer.notify_all();
        return;
      }
    }
    const std::lock_guard lock(lateMutex);
    if (whenLate) whenLate(std::move(got));
  }
};

PatientLock::PatientLock(std::filesystem::path file, std::function<void(Answer)> whenLate)
    : file_(std::move(file)), patience_(wholePatience), request_(std::make_shared<Request>()) {
  request_->whenLate = std::move(whenLate);
}

PatientLock::~PatientLock() {
  const std::lock_guard lock(request_->lateMutex);
  request_->whenLate = {};
}

PatientLock::Answer PatientLock::take() {
  if (isWaiting_) return tl::unexpected(isHeldElsewhere());
  // Whatever the machine is busy with: a lock that is free is had.
  if (auto lock = FileLock::takeIfFree(file_)) {
    patience_ = wholePatience;
    return *std::move(lock);
  }
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  std::unique_lock lock(request_->mutex);
  request_->answer.reset();
  request_->isLate = false;
  try {
    std::thread([request = request_, file = file_] { request->deliver(FileLock::take(file)); }).detach();
  } catch (const std::system_error& error) {
    return tl::unexpected(FileError{error.code().value(), "no thread can be started to wait for its lock"});
  }
  const std::chrono::duration<double> patience(patience_);
  if (!request_->hasAnswer.wait_for(lock, patience, [this] { return request_->answer.has_value(); })) {
    request_->isLate = true;
    isWaiting_ = true;
    patience_ = 0;
    return tl::unexpected(isHeldElsewhere());
  }
  // What was waited for one lock is not there for the next, until one comes at once.
  const std::chrono::duration<double> waited = Clock::now() - start;
  patience_ = waited.count() < atOnce ? wholePatience : std::max(0.0, patience_ - waited.count());
  return *std::exchange(request_->answer, std::nullopt);
}

void PatientLock::arrived() {
  isWaiting_ = false;
  patience_ = wholePatience;
}

}  // namespace platform
