#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <optional>
#include <string>
#include <string_view>

namespace markdown {

/// A line "[name]: url". Blanks at the end of the line belong to the address.
struct URLDeclaration {
  /// In lower case.
  std::string name;
  std::string_view url;

  [[nodiscard]] static std::optional<URLDeclaration> read(Reader& reader, Content& content);
};

}  // namespace markdown
