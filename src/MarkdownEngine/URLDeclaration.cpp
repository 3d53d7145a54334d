#include "MarkdownEngine/URLDeclaration.h"

#include "MarkdownEngine/NamedURLCollection.h"

namespace markdown {

std::optional<URLDeclaration> URLDeclaration::read(Reader& reader, Content& /*content*/) {
  if (!reader.read('[')) return std::nullopt;
  const std::size_t nameStart = reader.currentIndex();
  const auto nameEnd = reader.source().searches().brackets.find(nameStart);
  if (!nameEnd) return std::nullopt;
  reader.moveToIndex(*nameEnd + 1);
  if (!reader.read(':') || !reader.readWhitespaces()) return std::nullopt;
  return URLDeclaration{lowercased(reader.characters(nameStart, *nameEnd)), reader.readUntilEndOfLine()};
}

}  // namespace markdown
