#pragma once

#include "Components/MarkdownWebViewController.h"

#include <memory>

namespace velkin {

/// The page in which a panel shows its answers, one after the other. Its engine starts at the first use. Main
/// thread.
class AnswerPage {
 public:
  const std::shared_ptr<MarkdownWebViewController>& controller();
  /// Starts the engine while there is nothing to show yet, so that the answer needn't wait for it.
  void warmUp();

 private:
  std::shared_ptr<MarkdownWebViewController> controller_;
};

}  // namespace velkin
