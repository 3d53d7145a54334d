#pragma once

#include "MarkdownEngine/ColumnAlignment.h"
#include "MarkdownEngine/GrowingArray.h"
#include "MarkdownEngine/Link.h"
#include "MarkdownEngine/OpenList.h"
#include "MarkdownEngine/OpenText.h"
#include "MarkdownEngine/TextStyleMarker.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace markdown {

class HtmlWriter;

/// One step of a block's content. All content stands in one flat list; what holds other content is a pair
/// of steps around it, so that no depth of nesting costs any stack.
struct Component {
  enum class Kind : std::uint8_t {
    /// A piece of the input, printed as it stands.
    text,
    /// The blank that takes a newline's place or separates joined lines.
    blank,
    /// A character of the input that is printed as its escape.
    escape,
    linebreak,
    /// `extra` holds the marker.
    styleMarker,
    /// A piece of the input between two backticks.
    inlineCode,
    /// A piece of the input that is printed as it stands, but is an element of its own.
    html,
    /// `extra` is the index of the link's record.
    linkStart,
    linkEnd,
    imageStart,
    imageEnd,
    /// `extra` is the first number of an ordered list, or `unordered`.
    listStart,
    /// As above.
    listEnd,
    itemStart,
    itemEnd,
    /// The content goes on at the index `extra`. Text that was added to an item behind its nested list, and a
    /// nested
    /// list that was replaced, are put in order by such steps.
    jump,
  };
  static constexpr std::uint64_t unordered = ~std::uint64_t{0};

  /// A position in the input.
  std::uint64_t begin : 56;
  Kind kind : 8;
  /// The length of the piece of the input, or what the kind says.
  std::uint64_t extra;
};
static_assert(sizeof(Component) == 16);

/// A stretch of the content.
struct ComponentRange {
  std::size_t first = 0;
  std::size_t last = 0;
};

/// A cell of a table: where its content begins. It ends where the next cell's begins.
struct TableCell {
  std::uint64_t first : 63;
  std::uint64_t startsRow : 1;
};
static_assert(sizeof(TableCell) == 8);

/// A marker of an open style that was written before it is known what becomes of it.
struct PlacedMarker {
  TextStyleMarker marker;
  /// Where it stands in the input and in the HTML.
  std::size_t begin;
  std::size_t position;
};

/// The content of a block, and the text on which it is a view. It is written as HTML as soon as the block is
/// read, and its memory serves the next one.
struct Content {
  explicit Content(std::string_view text) noexcept : source(text) {}

  [[nodiscard]] std::string_view text(const Component& component) const noexcept {
    return {source.data() + component.begin, component.extra};
  }
  [[nodiscard]] std::string_view url(const Link& link) const noexcept {
    return {source.data() + link.target.begin, link.target.end - link.target.begin};
  }
  void add(Component::Kind kind, std::size_t begin, std::uint64_t extra = 0) {
    Component component;
    component.begin = begin & maxPosition;
    component.kind = kind;
    component.extra = extra;
    components.push_back(component);
  }
  void addText(std::size_t begin, std::size_t end) { add(Component::Kind::text, begin, end - begin); }

  /// How much there is; what an attempt has added is dropped by going back to the sizes before it.
  struct Sizes {
    std::size_t components = 0;
    std::size_t links = 0;
    std::size_t cells = 0;
    std::size_t columnAlignments = 0;
  };
  [[nodiscard]] Sizes sizes() const noexcept {
    return {components.size(), links.size(), cells.size(), columnAlignments.size()};
  }
  void clear() {
    goBackTo({});
    placedMarkers.clear();
    isOverflowing = false;
  }
  [[nodiscard]] ComponentRange whole() const noexcept { return {0, components.size()}; }

  /// Whether so much of the block has been read that it should not be kept to the block's end.
  [[nodiscard]] bool isLarge() const noexcept {
    constexpr std::size_t limit = 4096;
    return (components.size() >= limit || cells.size() >= limit) && overflowWriter != nullptr;
  }
  /// Whether it may be written as well: nothing of it will be corrected or put in another order, and the
  /// block can't fail any more.
  [[nodiscard]] bool shouldOverflow() const noexcept { return isLarge() && mayOverflow; }
  /// Writes what has been read so far, behind the block's start if that isn't written yet. No link is open.
  void overflow();
  void goBackTo(const Sizes& sizes) {
    components.truncate(sizes.components);
    links.truncate(sizes.links);
    cells.truncate(sizes.cells);
    columnAlignments.truncate(sizes.columnAlignments);
  }

  static constexpr std::uint64_t maxPosition = (std::uint64_t{1} << 56) - 1;

  std::string_view source;
  /// What takes the content of a block that is too large to be kept; null if blocks have to be kept whole.
  HtmlWriter* overflowWriter = nullptr;
  /// What is written in front of the block's content.
  std::string_view blockStart;
  bool mayOverflow = false;
  /// Whether a part of the block has been written.
  bool isOverflowing = false;
  GrowingArray<Component> components;
  GrowingArray<Link> links;
  /// The cells of a table, row by row.
  GrowingArray<TableCell> cells;
  /// The alignments of a table with a header.
  GrowingArray<ColumnAlignment> columnAlignments;
  /// The lists that are being read, the outermost first.
  GrowingArray<OpenList> openLists;
  /// What the text parser keeps of the texts around a link's; here so that its memory is used again.
  GrowingArray<OpenText> openTexts;
  /// The markers of all open styles.
  GrowingArray<ActiveMarker> activeMarkers;
  GrowingArray<PlacedMarker> placedMarkers;
};

[[nodiscard]] std::uint64_t packed(const TextStyleMarker& marker) noexcept;
[[nodiscard]] TextStyleMarker unpacked(std::uint64_t extra) noexcept;

}  // namespace markdown
