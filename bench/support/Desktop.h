#pragma once

#include <string>

#include <gio/gio.h>
#include <libsoup/soup.h>

namespace bench {

/// The session bus; ends the benchmark where there is none.
GDBusConnection* sessionBus();

/// Calls a method without waiting for its answer.
void callMethod(const std::string& name, const char* path, const char* interface, const char* method,
                GVariant* arguments = nullptr);

/// A click on the tray icon of the process, as the tray tells of it: opens or closes the popover.
void clickIcon(pid_t velkin);

/// Pages in the place of the six services, on their loopback addresses: each one colour all over.
class ServicePages {
 public:
  static constexpr int count = 6;
  /// The services in the order of their addresses.
  enum Service { chat, bard, bitbucket, gitlab, hemingway, jira };

  ServicePages();
  ~ServicePages();
  ServicePages(const ServicePages&) = delete;
  ServicePages& operator=(const ServicePages&) = delete;

  /// Red, green and blue, a byte each.
  static unsigned long colour(Service service);
  static std::string address(Service service);

 private:
  SoupServer* server_;
};

}  // namespace bench
