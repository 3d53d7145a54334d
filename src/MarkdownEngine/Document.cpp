#include "MarkdownEngine/Document.h"

#include "MarkdownEngine/TitleStorage.h"
#include "MarkdownEngine/URLDeclaration.h"

namespace markdown {

Document::Document(std::string_view text) : source_(text), content_(text), reader_(source_) { read(); }

void Document::read() {
  while (true) {
    reader_.discardWhitespacesAndNewlines();
    if (reader_.didReachEnd()) return;
    if (!metadata_ && fragments_.empty() && reader_.isAt('-') && readMetadata()) continue;
    const bool isRead = reader_.isAt('[') ? readURLDeclaration() : readFragment();
    if (!isRead) {
      const std::size_t start = reader_.currentIndex();
      append(Paragraph::readFallback(reader_, content_), start);
    }
  }
}

bool Document::readMetadata() {
  metadata_ = readOrRewind<Metadata>(reader_, content_);
  return metadata_.has_value();
}

bool Document::readURLDeclaration() {
  auto declaration = readOrRewind<URLDeclaration>(reader_, content_);
  if (!declaration) return false;
  urls_.insert(std::move(declaration->name), declaration->url);
  return true;
}

bool Document::readFragment() {
  // The first two characters choose the element; whether it stands there is its own business.
  if (reader_.isAtNumber()) return readFragmentOf<List>();
  const char byte = reader_.string()[reader_.currentIndex()];
  if (!reader_.isAt(byte)) return readFragmentOf<Paragraph>();
  switch (byte) {
    case '#':
      return readFragmentOf<Heading>();
    case '!':
      return readFragmentOf<MarkdownImage::Image>();
    case '<':
      return readFragmentOf<HTML>();
    case '>':
      return readFragmentOf<Blockquote>();
    case '`':
      return readFragmentOf<CodeBlock>();
    case '-':
    case '*': {
      Reader next = reader_;
      next.advanceIndex();
      return next.isAt(byte) ? readFragmentOf<HorizontalLine>() : readFragmentOf<List>();
    }
    case '+':
      return readFragmentOf<List>();
    case '|':
      return readFragmentOf<Table>();
    default:
      return readFragmentOf<Paragraph>();
  }
}

template <typename Element>
bool Document::readFragmentOf() {
  const std::size_t start = reader_.currentIndex();
  auto element = readOrRewind<Element>(reader_, content_);
  if (!element) return false;
  append(*std::move(element), start);
  return true;
}

template <typename Element>
void Document::append(Element element, std::size_t start) {
  fragments_.push_back({std::move(element), reader_.characters(start, reader_.currentIndex())});
}

std::string Document::html(const ModifierCollection& modifiers, const BlockquoteFrame& frame) const {
  HtmlWriter writer({content_, urls_, modifiers, frame});
  for (const ParsedFragment& parsed : fragments_) {
    const std::size_t start = writer.size();
    std::visit(
        [&](const auto& element) {
          element.writeHtml(writer);
          // An image's components have passed through the modifiers when they were written.
          using Element = std::decay_t<decltype(element)>;
          if constexpr (!std::is_same_v<Element, MarkdownImage::Image>) {
            writer.applyModifiers(Element::modifierTarget, start, parsed.rawString);
          }
        },
        parsed.fragment);
  }
  return std::move(writer).take();
}

std::map<std::string, std::string> Document::metadata(const ModifierCollection& modifiers) const {
  if (!metadata_) return {};
  return metadata_->applyingModifiers(modifiers).values;
}

std::shared_ptr<TitleStorage> Document::title() const {
  for (const ParsedFragment& parsed : fragments_) {
    const auto* heading = std::get_if<Heading>(&parsed.fragment);
    if (heading != nullptr && heading->level == 1) {
      return std::make_shared<TitleStorage>(*heading, parsed.rawString, content_);
    }
  }
  return nullptr;
}

}  // namespace markdown
