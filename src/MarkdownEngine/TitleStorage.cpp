#include "MarkdownEngine/TitleStorage.h"

namespace markdown {

TitleStorage::TitleStorage(const Heading& heading, std::string_view rawString, const Content& content)
    : source_(rawString), content_(source_), titleHeading_(heading) {
  const auto offset = static_cast<std::size_t>(rawString.data() - content.source.data());
  const ComponentRange& range = heading.text.components;
  for (std::size_t index = range.first; index != range.last; ++index) {
    const Component& component = content.components[index];
    content_->add(component.kind, component.begin - offset, component.extra);
  }
  titleHeading_.text.components = {0, content_->components.size()};
}

std::optional<std::string> TitleStorage::title() {
  const std::lock_guard lock(mutex_);
  if (!title_ && content_) {
    title_.emplace();
    titleHeading_.writePlainText(*content_, *title_);
  }
  return title_;
}

}  // namespace markdown
