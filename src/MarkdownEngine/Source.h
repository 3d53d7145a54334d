#pragma once

#include "MarkdownEngine/LinkOutcomes.h"

#include <string_view>

namespace markdown {

/// A text that is being read, together with everything that has been found out about it on the way. What
/// decides whether an element begins at a position is a fact about the text, so it is looked for once,
/// however often and from wherever an attempt is made there.
///
/// The text must be valid UTF-8 and outlive the source; every element read from it is a view on it. One
/// source is used by one thread at a time.
class Source {
 public:
  explicit Source(std::string_view text) : text_(text), searches_(text), links_(text, searches_) {}
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  [[nodiscard]] std::string_view text() const noexcept { return text_; }
  [[nodiscard]] InlineSearches& searches() noexcept { return searches_; }
  [[nodiscard]] LinkOutcomes& links() noexcept { return links_; }

 private:
  std::string_view text_;
  InlineSearches searches_;
  LinkOutcomes links_;
};

}  // namespace markdown
