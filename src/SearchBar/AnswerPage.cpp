#include "SearchBar/AnswerPage.h"

#include "Components/MarkdownPage.h"

#include <utility>

namespace velkin {

namespace {

constexpr std::size_t keptLength = std::size_t{1} << 20U;

}  // namespace

AnswerPage::AnswerPage(std::shared_ptr<KeptAnswerView> kept) : kept_(std::move(kept)) {}

AnswerPage::~AnswerPage() {
  if (!controller_) return;
  auto& view = *controller_->webView;
  // Another panel may have taken the view over.
  if (view.navigationDelegate != controller_.get()) return;
  if (controller_->shownLength() > keptLength) {
    // The engine gives the memory of a long page back with its view only.
    kept_->webView.reset();
    return;
  }
  view.setPageZoom(1);
  view.loadHTMLString({}, std::nullopt);
}

const std::shared_ptr<MarkdownWebViewController>& AnswerPage::controller() {
  if (controller_) return controller_;
  if (!kept_->webView) {
    kept_->webView = platform::WKWebView::make({}, markdownPageConfiguration());
  }
  controller_ = std::make_shared<MarkdownWebViewController>(kept_->webView);
  return controller_;
}

void AnswerPage::warmUp() {
  if (!controller_) controller()->webView->loadHTMLString({}, std::nullopt);
}

}  // namespace velkin
