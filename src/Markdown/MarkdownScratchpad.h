#pragma once

#include "Components/MarkdownWebViewController.h"
#include "Markdown/MarkdownConversion.h"
#include "Markdown/MarkdownModifierHelper.h"
#include "Markdown/ScratchpadJournal.h"
#include "Platform/Alive.h"
#include "Platform/NSTextView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velkin {

/// The engine's view of the preview, for one scratchpad after the other: an engine that closes a view may
/// leave some of its threads behind. Made at the first use.
struct KeptPreview {
  std::shared_ptr<platform::WKWebView> webView;
};

/// What a scratchpad is made of beside its description: the editor, the page of the preview, and the journal.
/// They are made when the scratchpad first comes on show, and live as long as it. Main thread.
class MarkdownScratchpad {
 public:
  explicit MarkdownScratchpad(std::shared_ptr<KeptPreview> kept = std::make_shared<KeptPreview>())
      : kept_(std::move(kept)) {}
  ~MarkdownScratchpad();
  MarkdownScratchpad(const MarkdownScratchpad&) = delete;
  MarkdownScratchpad& operator=(const MarkdownScratchpad&) = delete;

  platform::NSTextView& editor();
  MarkdownModifierHelper& modifierHelper();
  const std::shared_ptr<MarkdownWebViewController>& preview();
  MarkdownConversion& conversion() { return conversion_; }

  /// Gives the editor the keyboard, in a later turn: what is to come on show by then counts.
  void takeKeyboard();

  /// Keeps a change of the text, unless it leads to what nobody wrote. False if it couldn't be kept for the
  /// first time.
  bool keep(const std::string& before, const std::string& now);
  /// The text of the scratchpad before this one: what the journal's newest was at the first call.
  const std::optional<std::string>& lastText();
  std::vector<ScratchpadJournal::Entry> earlierTexts() const { return journal_.entries(); }

 private:
  std::shared_ptr<KeptPreview> kept_;
  std::unique_ptr<platform::NSTextView> editor_;
  std::unique_ptr<MarkdownModifierHelper> modifierHelper_;
  std::shared_ptr<MarkdownWebViewController> preview_;
  MarkdownConversion conversion_;
  ScratchpadJournal journal_ = ScratchpadJournal::ofUser();
  ScratchpadJournalWriter writer_{journal_};
  std::optional<std::string> lastText_;
  bool hasLookedForLastText_ = false;
  bool hasFailed_ = false;
  platform::Alive isAlive_;
};

}  // namespace velkin
