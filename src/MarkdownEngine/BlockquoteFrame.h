#pragma once

#include <string>

namespace markdown {

/// What a blockquote's inner HTML stands between. The engine doesn't know the program's colours, so whoever
/// converts hands the frame in.
struct BlockquoteFrame {
  std::string before = "<blockquote>";
  std::string after = "</blockquote>";
};

}  // namespace markdown
