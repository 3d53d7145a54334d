#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Metadata.h"
#include "MarkdownEngine/NamedURLCollection.h"
#include "MarkdownEngine/ParsedFragment.h"
#include "MarkdownEngine/Source.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace markdown {

class TitleStorage;

/// One text, read from its start to its end. HTML can only be written after that, as an address may be
/// declared behind the links that use it.
class Document {
 public:
  /// `text` is valid UTF-8 and outlives the document.
  explicit Document(std::string_view text);

  [[nodiscard]] std::string html(const ModifierCollection& modifiers, const BlockquoteFrame& frame) const;
  [[nodiscard]] std::map<std::string, std::string> metadata(const ModifierCollection& modifiers) const;
  /// Of the first heading of level 1; null without one.
  [[nodiscard]] std::shared_ptr<TitleStorage> title() const;

 private:
  void read();
  [[nodiscard]] bool readMetadata();
  [[nodiscard]] bool readURLDeclaration();
  [[nodiscard]] bool readFragment();
  template <typename Element>
  [[nodiscard]] bool readFragmentOf();
  template <typename Element>
  void append(Element element, std::size_t start);

  Source source_;
  Content content_;
  Reader reader_;
  std::vector<ParsedFragment> fragments_;
  NamedURLCollection urls_;
  std::optional<Metadata> metadata_;
};

}  // namespace markdown
