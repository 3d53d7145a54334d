#include "Platform/NSTextView.h"

namespace platform {

View TextView(NSTextView& textView) {
  return HostedView(
      &textView, [view = &textView] { return view; }, [](NSView&) {});
}

}  // namespace platform
