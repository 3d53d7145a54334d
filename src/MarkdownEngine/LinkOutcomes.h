#pragma once

#include "MarkdownEngine/InlineSearches.h"
#include "MarkdownEngine/PositionSet.h"
#include "MarkdownEngine/PositionStack.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace markdown {

/// Answers whether a link begins at a "[", before anything of it is written.
///
/// A link's text is walked with the links in it on a stack. If one of them fails, all around it fail too:
/// from the inner "[" on, the outer text is read exactly as the inner one was, so it ends at the same place
/// for the same reason. Failed openers are remembered, and so is the outcome of every line end that was
/// passed: what becomes of a link text from there on depends on the position alone, wherever the link was
/// opened.
class LinkOutcomes {
 public:
  LinkOutcomes(std::string_view text, InlineSearches& searches)
      : text_(text), searches_(searches), failedOpeners_(text.size()), failedNewlines_(text.size()) {}

  /// `opener` is the position of a character "[".
  [[nodiscard]] bool isLink(std::size_t opener);

 private:
  /// Drops the link opened last, which ends at `linkEnd`, and remembers the outcome for its newlines.
  void closeInner(std::size_t linkEnd);
  bool fail();

  std::string_view text_;
  InlineSearches& searches_;
  PositionSet failedOpeners_;
  PositionSet failedNewlines_;
  std::unordered_map<std::size_t, std::size_t> linkEndsByNewline_;
  /// The links that are open, and the newlines that were passed in their texts.
  PositionStack openers_;
  PositionStack newlines_;
};

}  // namespace markdown
