#pragma once

namespace velkin {

/// What the program's two hot keys do. Main thread.
class HotkeySolutionDelegate {
 public:
  virtual ~HotkeySolutionDelegate() = default;
  virtual void didUseGlobalHotKeys() = 0;
  virtual void handleSearchBarDelegate() = 0;
};

}  // namespace velkin
