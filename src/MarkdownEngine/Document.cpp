#include "MarkdownEngine/Document.h"

#include "MarkdownEngine/Blockquote.h"
#include "MarkdownEngine/CodeBlock.h"
#include "MarkdownEngine/HTML.h"
#include "MarkdownEngine/Heading.h"
#include "MarkdownEngine/HorizontalLine.h"
#include "MarkdownEngine/List.h"
#include "MarkdownEngine/MarkdownImage.h"
#include "MarkdownEngine/Paragraph.h"
#include "MarkdownEngine/Table.h"
#include "MarkdownEngine/TitleStorage.h"
#include "MarkdownEngine/URLDeclaration.h"

namespace markdown {

Document::Document(std::string_view text, const Options& options)
    : options_(options), source_(text), content_(text), reader_(source_) {}

std::string Document::html() {
  const bool isReadTwice = !options_.modifiers.isEmpty();
  if (isReadTwice) {
    read(nullptr);
    areURLsKnown_ = true;
    reader_.moveToIndex(0);
    hasFragments_ = false;
    metadata_.reset();
  }
  HtmlWriter writer({content_, isReadTwice ? &urls_ : nullptr, options_.modifiers, options_.blockquoteFrame});
  content_.overflowWriter = isReadTwice ? nullptr : &writer;
  read(&writer);
  content_.overflowWriter = nullptr;
  return std::move(writer).take(urls_);
}

void Document::read(HtmlWriter* writer) {
  while (true) {
    reader_.discardWhitespacesAndNewlines();
    if (reader_.didReachEnd()) return;
    if (!metadata_ && !hasFragments_ && reader_.isAt('-') && readMetadata()) continue;
    const bool isRead = reader_.isAt('[') ? readURLDeclaration() : readFragment(writer);
    if (!isRead) {
      const std::size_t start = reader_.currentIndex();
      add(Paragraph::readFallback(reader_, content_), start, writer);
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
  // In the second reading all of them are known; an earlier one must not come back.
  if (!areURLsKnown_) urls_.insert(std::move(declaration->name), declaration->url);
  return true;
}

bool Document::readFragment(HtmlWriter* writer) {
  // The first two characters choose the element; whether it stands there is its own business.
  if (reader_.isAtNumber()) return readFragmentOf<List>(writer);
  const char byte = reader_.string()[reader_.currentIndex()];
  if (!isAscii(byte) || !reader_.isAt(byte)) return readFragmentOf<Paragraph>(writer);
  switch (byte) {
    case '#':
      return readFragmentOf<Heading>(writer);
    case '!':
      return readFragmentOf<MarkdownImage::Image>(writer);
    case '<':
      return readFragmentOf<HTML>(writer);
    case '>':
      return readFragmentOf<Blockquote>(writer);
    case '`':
      return readFragmentOf<CodeBlock>(writer);
    case '-':
    case '*': {
      Reader next = reader_;
      next.advanceIndex();
      return next.isAt(byte) ? readFragmentOf<HorizontalLine>(writer) : readFragmentOf<List>(writer);
    }
    case '+':
      return readFragmentOf<List>(writer);
    case '|':
      return readFragmentOf<Table>(writer);
    default:
      return readFragmentOf<Paragraph>(writer);
  }
}

template <Fragment Element>
bool Document::readFragmentOf(HtmlWriter* writer) {
  const std::size_t start = reader_.currentIndex();
  const auto element = readOrRewind<Element>(reader_, content_);
  if (!element) return false;
  add(*element, start, writer);
  return true;
}

template <Fragment Element>
void Document::add(const Element& element, std::size_t start, HtmlWriter* writer) {
  hasFragments_ = true;
  const std::string_view rawString = reader_.characters(start, reader_.currentIndex());
  if constexpr (std::is_same_v<Element, Heading>) {
    if (element.level == 1 && options_.needsTitle && !title_) {
      title_ = std::make_shared<TitleStorage>(element, rawString, content_);
    }
  }
  if (writer != nullptr) {
    const std::size_t htmlStart = writer->size();
    element.writeHtml(*writer);
    // An image's components have passed through the modifiers when they were written.
    if constexpr (!std::is_same_v<Element, MarkdownImage::Image>) {
      writer->applyModifiers(Element::modifierTarget, htmlStart, rawString);
    }
  }
  content_.clear();
}

std::map<std::string, std::string> Document::metadata() const {
  if (!metadata_) return {};
  return metadata_->applyingModifiers(options_.modifiers).values;
}

}  // namespace markdown
