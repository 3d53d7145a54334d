#pragma once

#include <cstddef>

namespace markdown {

/// A list that is being read.
struct OpenList {
  /// How many blanks stand before its items.
  std::size_t indentation = 0;
  /// The bullet, or what stands behind an item's number.
  char marker = 0;
  bool isOrdered = false;
  bool hasItems = false;
  /// Whether the last item has a nested list; what follows is only told then.
  bool hasNestedList = false;
  /// The component that leads from the item's text to its nested list.
  std::size_t jumpToNestedList = 0;
  std::size_t nestedListStart = 0;
  /// The component that leads from the nested list to what follows the item's content.
  std::size_t jumpBehindNestedList = 0;
};

}  // namespace markdown
