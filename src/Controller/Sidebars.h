#pragma once

#include "Controller/PopoverContent.h"
#include "Values/WebViewSwitchType.h"

#include <optional>

namespace velkin {

/// What stands beside the main view. Main thread.
class Sidebars {
 public:
  explicit Sidebars(PopoverContent& content) : content_(content) {}

  /// Nothing happens where there are no sidebars, and for the view in the main place.
  void toggle(WebViewSwitchType view);
  void close();
  /// Has the open sidebars of web views built again, at the window's present size.
  void reset();
  void open(std::optional<WebViewSwitchType> view);
  void setZoom(double zoom);

 private:
  PopoverContent& content_;
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
