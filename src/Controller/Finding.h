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
  /// The scratchpad and the pages of the program have none.
  bool hasFindBar() const;

  PopoverContent& content_;
};

}  // namespace velkin
