#pragma once

#include "Components/MarkdownWebViewController.h"

#include <memory>

namespace velkin {

/// The engine's view of the answers, for one panel after the other: an engine that closes a view may leave
/// some of its threads behind. Made at the first use.
struct KeptAnswerView {
  std::shared_ptr<platform::WKWebView> webView;
};

/// The page in which a panel shows its answers, one after the other. Its engine starts at the first use. With
/// the panel ends what the page shows: nothing of it is left in the view for the next one. Main thread.
class AnswerPage {
 public:
  /// In a view of its own, unless another one is kept.
  explicit AnswerPage(std::shared_ptr<KeptAnswerView> kept = std::make_shared<KeptAnswerView>());
  ~AnswerPage();
  AnswerPage(const AnswerPage&) = delete;
  AnswerPage& operator=(const AnswerPage&) = delete;

  const std::shared_ptr<MarkdownWebViewController>& controller();
  /// Starts the engine while there is nothing to show yet, so that the answer needn't wait for it.
  void warmUp();

 private:
  std::shared_ptr<KeptAnswerView> kept_;
  std::shared_ptr<MarkdownWebViewController> controller_;
};

}  // namespace velkin
