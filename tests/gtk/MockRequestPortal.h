#pragma once

#include "Platform/Gtk/GObjectPtr.h"

#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace platform {

/// A portal of the desktop with one method (a window, options) that answers by a request's signal. Without a
/// portal on the bus before.
class MockRequestPortal {
 public:
  MockRequestPortal(const std::string& interface, const std::string& method);
  ~MockRequestPortal();
  MockRequestPortal(const MockRequestPortal&) = delete;
  MockRequestPortal& operator=(const MockRequestPortal&) = delete;

  /// The parameters of each call, as text.
  std::vector<std::string> calls;
  /// 0: yes.
  guint32 answer = 0;
  std::map<std::string, std::string> results;
  /// The request stands elsewhere than where the caller expects it, as with old portals.
  bool usesOwnPath = false;

 private:
  void handle(const char* sender, GVariant* parameters, GDBusMethodInvocation* invocation);

  GObjectPtr<GDBusConnection> connection_;
  guint object_ = 0;
};

}  // namespace platform
