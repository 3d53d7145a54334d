#pragma once

#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSWorkspace.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Remembers what it was asked to open.
class HeadlessWorkspace : public NSWorkspace {
 public:
  std::vector<URL> opened;
  std::vector<NSRunningApplication> running;
  /// Of each screen, by its frame's origin.
  std::map<std::pair<double, double>, std::string> desktopImages;
  /// The files that were shown in the file manager.
  std::vector<std::string> revealed;

  bool open(const URL& url) override {
    opened.push_back(url);
    return true;
  }
  std::vector<NSRunningApplication> runningApplications() override { return running; }

  std::vector<NSUserNotification> delivered;
  int beeps = 0;
  void deliver(NSUserNotification notification) override { delivered.push_back(std::move(notification)); }
  void beep() override { ++beeps; }
  std::optional<std::string> desktopImageURLForScreen(const NSScreen& screen) override {
    const auto found = desktopImages.find({screen.frame.origin.x, screen.frame.origin.y});
    if (found == desktopImages.end()) return std::nullopt;
    return found->second;
  }
  void activateFileViewerSelecting(const std::string& path) override { revealed.push_back(path); }
};

/// Delivers at once and remembers what was posted.
class HeadlessDistributedNotificationCenter : public NSDistributedNotificationCenter {
 public:
  std::vector<std::pair<std::string, std::string>> posted;

  void post(const std::string& name, const std::string& object) override;
  Connection addObserver(const std::string& name,
                         std::function<void(const std::string& object)> action) override;

 private:
  std::multimap<std::string, std::weak_ptr<std::function<void(const std::string&)>>> observers_;
};

}  // namespace platform
