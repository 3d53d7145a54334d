#pragma once

#include "Platform/SystemServices.h"

#include <functional>
#include <memory>
#include <utility>

#include <gio/gio.h>

namespace platform {

class GtkSystemServices : public SystemServices {
 public:
  struct Surroundings {
    /// nullptr where there is no session bus.
    std::function<GDBusConnection*()> connection;
    /// Starts the toolkit if it doesn't run yet.
    std::function<void()> startToolkit;
    /// The popover stays for as long as the result is held.
    std::function<std::shared_ptr<void>()> keepOpen;
  };

  explicit GtkSystemServices(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

  bool setLoginItemEnabled(const std::string& identifier, bool isEnabled) override;
  std::vector<CGWindow> windowsOnScreen() override;
  void activate(int processIdentifier) override;
  void captureScreen(const ScreenCapture& capture,
                     std::function<void(tl::expected<std::string, NSError>)> completion) override;
  void printDocument(const std::string& pdf, const NSPrintInfo& info,
                     std::function<void(std::optional<NSError>)> ended) override;

 private:
  Surroundings surroundings_;
};

}  // namespace platform
