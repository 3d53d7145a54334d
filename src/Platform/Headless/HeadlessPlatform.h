#pragma once

#include "Platform/Headless/HeadlessQueue.h"
#include "Platform/Headless/HeadlessURLSession.h"
#include "Platform/Headless/HeadlessUserDefaults.h"
#include "Platform/Platform.h"

namespace platform {

/// A complete desktop in memory: the unit tests' world. Installs itself for its lifetime. What a test wants to
/// see or to arrange is public.
class HeadlessPlatform : public Platform {
 public:
  HeadlessPlatform();
  ~HeadlessPlatform() override;
  HeadlessPlatform(const HeadlessPlatform&) = delete;
  HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

  HeadlessQueue queue;
  HeadlessUserDefaults userDefaults;
  HeadlessURLSession urlSession;
  std::optional<std::string> lastFatalError;

  DispatchQueue& mainQueue() override { return queue; }
  double now() const override { return queue.now(); }
  NSUserDefaults& standardUserDefaults() override { return userDefaults; }
  NSURLSession& sharedURLSession() override { return urlSession; }
  void noteFatalError(std::string_view message) noexcept override;
  std::optional<std::string> takeLastFatalError() override;
};

}  // namespace platform
