#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/Metadata.h"
#include "MarkdownEngine/NamedURLCollection.h"
#include "MarkdownEngine/Readable.h"
#include "MarkdownEngine/Source.h"

#include <concepts>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace markdown {

class TitleStorage;

/// What every block can do: read itself, write itself as HTML and as plain text, and name its modifiers'
/// target.
template <typename Element>
concept Fragment = Readable<Element> &&
    requires(const Element& element, HtmlWriter& writer, const Content& content, std::string& text) {
  element.writeHtml(writer);
  element.writePlainText(content, text);
  { Element::modifierTarget } -> std::convertible_to<Modifier::Target>;
};

/// One text, read from its start to its end block by block. A block is written as soon as it is read; where a
/// link leads to an address by its name, which may be declared behind it, the place stays open to the end.
/// Modifiers have to see finished HTML: for them the text is read twice, for its declarations first.
class Document {
 public:
  struct Options {
    const ModifierCollection& modifiers;
    const BlockquoteFrame& blockquoteFrame;
    bool needsTitle;
  };

  /// `text` is valid UTF-8 and outlives the document, as do the options.
  Document(std::string_view text, const Options& options);

  [[nodiscard]] std::string html();
  /// The rest is known when the HTML is.
  [[nodiscard]] std::map<std::string, std::string> metadata() const;
  /// Of the first heading of level 1; null without one.
  [[nodiscard]] std::shared_ptr<TitleStorage> title() const noexcept { return title_; }

 private:
  /// Reads all blocks and writes them, if there is a writer.
  void read(HtmlWriter* writer);
  [[nodiscard]] bool readMetadata();
  [[nodiscard]] bool readURLDeclaration();
  [[nodiscard]] bool readFragment(HtmlWriter* writer);
  template <Fragment Element>
  [[nodiscard]] bool readFragmentOf(HtmlWriter* writer);
  template <Fragment Element>
  void add(const Element& element, std::size_t start, HtmlWriter* writer);

  Options options_;
  Source source_;
  Content content_;
  Reader reader_;
  bool hasFragments_ = false;
  bool areURLsKnown_ = false;
  NamedURLCollection urls_;
  std::optional<Metadata> metadata_;
  std::shared_ptr<TitleStorage> title_;
};

}  // namespace markdown
