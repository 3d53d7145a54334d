#include "MarkdownEngine/TextStyleMarker.h"

namespace markdown {

std::optional<TextStyleMarker> TextStyleMarker::read(Reader& reader, Content& /*content*/) noexcept {
  const auto readEmphasis = [&reader] { return reader.read('*') || reader.read('_'); };
  TextStyleMarker marker;
  if (readEmphasis()) {
    if (readEmphasis()) {
      marker.style = TextStyle::bold;
      marker.length = 2;
    }
    return marker;
  }
  if (!reader.read('~') || !reader.read('~')) return std::nullopt;
  marker.style = TextStyle::strikethrough;
  marker.length = 2;
  return marker;
}

}  // namespace markdown
