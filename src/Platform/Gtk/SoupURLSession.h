#pragma once

#include "Platform/NSURLSession.h"

#include <memory>

namespace platform {

/// The HTTP client on libsoup, with a main loop on a thread of its own, where every completion runs. The
/// thread starts with the first request.
class SoupURLSession : public NSURLSession {
 public:
  SoupURLSession();
  ~SoupURLSession() override;
  SoupURLSession(const SoupURLSession&) = delete;
  SoupURLSession& operator=(const SoupURLSession&) = delete;

  std::unique_ptr<NSURLSessionDataTask> dataTask(URLRequest request, Completion completion) override;

 private:
  class Loop;
  class Task;
  struct Exchange;

  std::shared_ptr<Loop> loop_;
};

}  // namespace platform
