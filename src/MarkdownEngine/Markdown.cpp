#include "MarkdownEngine/Markdown.h"

#include "MarkdownEngine/TitleStorage.h"

namespace markdown {

std::optional<std::string> Markdown::title() const {
  return titleStorage_ ? titleStorage_->title() : std::nullopt;
}

void Markdown::setTitle(std::optional<std::string> title) {
  titleStorage_ = std::make_shared<TitleStorage>(std::move(title));
}

}  // namespace markdown
