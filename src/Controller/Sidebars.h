#pragma once

#include "Controller/PopoverContent.h"
#include "Values/WebViewSwitchType.h"

#include <optional>

namespace velkin {

/// What stands beside the main view. Main thread.
class Sidebars {
 public:
  explicit Sidebars(PopoverContent& content) : content_(content) {}

  /// Nothing happens where there are no sidebars, and for the view in the main place. A sidebar that is
  /// opened gets the keyboard; when it is closed, the main view does.
  void toggle(WebViewSwitchType view);
  void close();
  /// Has the open sidebars of web views built again, at the window's present size.
  void reset();
  void open(std::optional<WebViewSwitchType> view);
  void setZoom(double zoom);

 private:
  bool canHave(WebViewSwitchType view) const;
  /// The window is large enough for any.
  bool areOnShow() const;

  PopoverContent& content_;
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
