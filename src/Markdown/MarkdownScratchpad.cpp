#include "Markdown/MarkdownScratchpad.h"

#include "Components/MarkdownPage.h"
#include "Markdown/SampleMarkdown.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"

#include <utility>

namespace velkin {

MarkdownScratchpad::~MarkdownScratchpad() {
  if (!preview_) return;
  auto& view = *preview_->webView;
  // Another scratchpad may have taken the view over. What this one showed isn't for the next one's beginning.
  if (view.navigationDelegate == preview_.get()) view.loadHTMLString({}, std::nullopt);
}

platform::NSTextView& MarkdownScratchpad::editor() {
  if (!editor_) {
    editor_ = platform::NSTextView::make();
    editor_->setAccessibilityLabel("Markdown");
    editor_->setTextColor(platform::Color(platform::Color::Role::primary, 0.7));
  }
  return *editor_;
}

MarkdownModifierHelper& MarkdownScratchpad::modifierHelper() {
  if (!modifierHelper_) modifierHelper_ = std::make_unique<MarkdownModifierHelper>(editor());
  return *modifierHelper_;
}

const std::shared_ptr<MarkdownWebViewController>& MarkdownScratchpad::preview() {
  if (!preview_) {
    if (!kept_->webView) kept_->webView = platform::WKWebView::make({}, markdownPageConfiguration(true));
    preview_ = std::make_shared<MarkdownWebViewController>(kept_->webView);
    preview_->loadsInTurn = true;
  }
  return preview_;
}

void MarkdownScratchpad::takeKeyboard() {
  platform::DispatchQueue::main().async([this, alive = isAlive_.watch()] {
    if (alive && editor_) editor_->makeFirstResponder();
  });
}

bool MarkdownScratchpad::keep(const std::string& before, const std::string& now) {
  if (now.empty() || now == sampleMarkdown) {
    writer_.endEntry();
    return true;
  }
  if (writer_.changed(before == sampleMarkdown ? std::string() : before, now)) return true;
  if (std::exchange(hasFailed_, true)) return true;
  platform::debugLog("MarkdownScratchpad", "keep(_:)", "The scratchpad's text can't be kept on disk");
  return false;
}

const std::optional<std::string>& MarkdownScratchpad::lastText() {
  if (!std::exchange(hasLookedForLastText_, true)) {
    if (auto latest = journal_.latest()) lastText_ = std::move(latest->text);
  }
  return lastText_;
}

}  // namespace velkin
