#pragma once

#include "Appearance/ZoomedTextWebViewController.h"
#include "Values/AppearanceFontSize.h"

#include <array>
#include <memory>

namespace velkin {

/// The pages of the samples, one for each step of the zoom. All live in one process, which ends with this.
/// Main thread.
class ZoomSamples {
 public:
  ZoomSamples();

  /// Made at the first use, with its page.
  ZoomedTextWebViewController& operator[](AppearanceFontSize size);

 private:
  std::shared_ptr<platform::WKProcessPool> pool_ = std::make_shared<platform::WKProcessPool>();
  std::array<std::unique_ptr<ZoomedTextWebViewController>, allAppearanceFontSizes.size()> controllers_;
};

}  // namespace velkin
