#pragma once

#include "MarkdownEngine/BlockquoteFrame.h"
#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/ModifierCollection.h"
#include "MarkdownEngine/NamedURLCollection.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace markdown {

/// Writes a document's HTML behind one another into one growing string.
class HtmlWriter {
 public:
  struct Context {
    const Content& content;
    /// The declared addresses, if all of them are known. Otherwise names stand for them until the end.
    const NamedURLCollection* urls;
    const ModifierCollection& modifiers;
    const BlockquoteFrame& blockquoteFrame;
  };

  explicit HtmlWriter(const Context& context);

  [[nodiscard]] const Context& context() const noexcept { return context_; }
  [[nodiscard]] std::size_t size() const noexcept { return html_.size(); }
  [[nodiscard]] std::string_view html(std::size_t from) const noexcept {
    return std::string_view(html_).substr(from);
  }
  /// What was written, with the declared addresses in the places of their names and markers corrected.
  [[nodiscard]] std::string take(const NamedURLCollection& urls) &&;

  void write(std::string_view html) { html_.append(html); }
  void write(char byte) { html_.push_back(byte); }
  /// "<", ">" and "&" as escapes, everything else as it stands.
  void writeEscaped(std::string_view text);
  void writeContent(const ComponentRange& range);
  void truncate(std::size_t size) { html_.resize(size); }

  /// Corrects, in the finished HTML, a marker that was written before it was known to be this one.
  void replaceMarker(const PlacedMarker& placed, const TextStyleMarker& marker);

  /// Replaces what was written from `start` on by what the target's modifiers make of it.
  void applyModifiers(Modifier::Target target, std::size_t start, std::string_view markdown);

  /// What a document can make the engine write without writing it itself is bounded: cells that fill up short
  /// rows, and declared addresses. Without a bound both grow with the square of the input, to a hundred
  /// gigabytes for some megabytes. True if `bytes` more are within it; they count as written then.
  [[nodiscard]] bool takeFromAllowance(std::size_t bytes) noexcept;

 private:
  struct Edit;
  [[nodiscard]] GrowingArray<Edit> addressEdits(const NamedURLCollection& urls);
  /// Sees to it that something can be written, told how far in the text the writing is.
  void makeRoom(std::size_t sourcePosition);
  void writeListTag(const Component& component);
  void startLink(const Component& component);
  void endLink(const Component& component);
  void writeAddress(const Link& link);
  [[nodiscard]] std::string_view declared(std::string_view name, const NamedURLCollection& urls);

  Context context_;
  std::string html_;
  std::size_t allowance_;
  /// A place in the HTML where a name stands that may turn out to be that of an address.
  struct OpenAddress {
    std::size_t position;
    std::size_t nameLength;
  };
  GrowingArray<OpenAddress> openAddresses_;
  /// A stretch of the HTML that is to become the HTML of another marker.
  struct MarkerReplacement {
    std::size_t position;
    std::size_t length;
    std::size_t sourcePosition;
    TextStyleMarker marker;
  };
  GrowingArray<MarkerReplacement> markerReplacements_;
  /// Where the links begin that are being written: the whole, and the start of an image's description.
  struct Start {
    std::size_t link;
    std::size_t description;
  };
  GrowingArray<Start> starts_;
};

/// The escape of "<", ">" or "&".
[[nodiscard]] std::string_view escaped(char character) noexcept;

}  // namespace markdown
