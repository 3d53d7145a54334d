#pragma once

#include "Platform/DispatchQueue.h"

#include <optional>
#include <string>

namespace velkin {

/// 1 January 2001, 00:00:00 UTC, in seconds since 1970: from where dates in stored JSON count.
inline constexpr double referenceDate = 978'307'200;

/// One search of the history.
struct SearchBarSearch {
  /// Seconds since the reference date; the present moment unless given.
  double date = platform::now() - referenceDate;
  /// As typed.
  std::string searchPrompt = {};
  /// In spite of its name the HTML that was made of the answer, so that a recalled search is shown as it is.
  std::optional<std::string> resultMarkdown = std::nullopt;

  bool operator==(const SearchBarSearch&) const = default;
};

}  // namespace velkin
