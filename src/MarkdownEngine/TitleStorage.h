#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Heading.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace markdown {

/// The title that the copies of a `Markdown` share. It keeps the heading with a copy of the text that it
/// views.
class TitleStorage {
 public:
  /// Copies the heading, which was read from the stretch `rawString` of the content's text.
  TitleStorage(const Heading& heading, std::string_view rawString, const Content& content);

  [[nodiscard]] std::optional<std::string> title();

 private:
  std::mutex mutex_;
  std::optional<std::string> title_;
  std::string source_;
  std::optional<Content> content_;
  Heading titleHeading_;
};

}  // namespace markdown
