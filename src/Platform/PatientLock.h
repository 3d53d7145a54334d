#pragma once

#include "Platform/WholeFile.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace platform {

/// A file lock for a thread that must go on: another process may hold it for ever, and on a network's file
/// system even asking for it may never come back. So a thread of its own does the waiting.
class PatientLock {
 public:
  using Answer = tl::expected<FileLock, FileError>;

  /// `whenLate` is called with each answer for which `take` couldn't wait, on a thread of the lock's own.
  PatientLock(std::filesystem::path file, std::function<void(Answer)> whenLate);
  /// Waits for a `whenLate` that runs. One for which the lock comes later is not called any more.
  ~PatientLock();
  PatientLock(const PatientLock&) = delete;
  PatientLock& operator=(const PatientLock&) = delete;

  /// The lock, or why there is none. It waits one second at the most in all, until the lock was to be had
  /// again; then the error has the code EWOULDBLOCK, and `whenLate` gets the answer. Not on two threads at
  /// once.
  Answer take();
  /// To be called by `whenLate`, kept apart from `take`: from here on the next `take` asks anew.
  void arrived();
  /// True while an answer for `whenLate` is to come. Kept apart from `take`, too.
  bool isWaiting() const { return isWaiting_; }

 private:
  struct Request;

  std::filesystem::path file_;
  double patience_;
  bool isWaiting_ = false;
  std::shared_ptr<Request> request_;
};

}  // namespace platform
