#pragma once

#include "Controller/PopoverContent.h"

namespace velkin {

/// The find bar's coming and going. Main thread.
class Finding {
 public:
  explicit Finding(PopoverContent& content) : content_(content) {}

  void toggle();
  /// True if there was a find bar to close.
  bool end();

 private:
  bool hasFindBar() const { return content_.isFindableView() || content_.hostedNotesView; }

  PopoverContent& content_;
};

}  // namespace velkin
