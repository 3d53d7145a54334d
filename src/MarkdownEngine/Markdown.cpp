#include "MarkdownEngine/Markdown.h"

#include "MarkdownEngine/TitleStorage.h"

namespace markdown {

std::optional<std::string> Markdown::title() const {
  if (ownTitle_) return ownTitle_;
  return titleStorage_ ? titleStorage_->title() : std::nullopt;
}

void Markdown::setTitle(std::optional<std::string> title) { ownTitle_ = std::move(title); }

}  // namespace markdown
