#include "MarkdownEngine/Component.h"

#include "MarkdownEngine/HtmlWriter.h"

namespace markdown {
namespace {

constexpr unsigned bitsPerField = 8;

}  // namespace

void Content::overflow() {
  if (!isOverflowing) overflowWriter->write(blockStart);
  isOverflowing = true;
  std::size_t first = 0;
  for (ActiveMarker& active : activeMarkers) {
    if (active.isPlaced) continue;
    overflowWriter->writeContent({first, active.index});
    first = active.index + 1;
    const Component& component = components[active.index];
    placedMarkers.push_back({unpacked(component.extra), component.begin, overflowWriter->size()});
    overflowWriter->writeContent({active.index, first});
    active.isPlaced = 1;
    active.index = (placedMarkers.size() - 1) & maxPosition;
  }
  overflowWriter->writeContent({first, components.size()});
  components.clear();
  links.clear();
}

std::uint64_t packed(const TextStyleMarker& marker) noexcept {
  std::uint64_t extra = 0;
  const auto put = [&extra](auto value) { extra = extra << bitsPerField | static_cast<std::uint8_t>(value); };
  put(marker.style);
  put(marker.kind);
  put(marker.leftOver);
  put(marker.isValid);
  put(marker.length);
  return extra;
}

TextStyleMarker unpacked(std::uint64_t extra) noexcept {
  const auto take = [&extra] {
    const auto value = static_cast<std::uint8_t>(extra);
    extra >>= bitsPerField;
    return value;
  };
  TextStyleMarker marker;
  marker.length = take();
  marker.isValid = take() != 0;
  marker.leftOver = static_cast<TextStyleMarker::LeftOver>(take());
  marker.kind = static_cast<TextStyleMarker::Kind>(take());
  marker.style = static_cast<TextStyle>(take());
  return marker;
}

}  // namespace markdown
