#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Linebreaks.h"
#include "MarkdownEngine/Reader.h"

#include <cstddef>
#include <string_view>

namespace markdown {

/// Walks the characters of one formatted text and appends its components to the content. Links are only
/// entered when it is known that they are links, so that nothing written is ever taken back; the texts around
/// a link wait on a stack of their own.
class FormattedTextParser {
 public:
  /// Moves `reader` to the end of the text when parsing ends.
  FormattedTextParser(Reader& reader, Content& content, Terminators terminators) noexcept;

  void parse();
  /// Reads just the image at the reader's position, which is at "![". False if there is none; nothing is read
  /// then.
  [[nodiscard]] bool parseImage();

 private:
  /// What the walk does after a character.
  enum class Next : bool { goOn, leave };

  Next parseCharacter(char byte);
  Next parseBeyondAscii();
  Next parseWhitespace(graphemes::Whitespace found);
  Next parseNewline(graphemes::Whitespace newline);
  Next parseLess();
  void parseStyleMarker();
  void parseInlineCode();
  void parseAmpersand();
  void openLink(std::size_t bracket, Component::Kind kind);
  void closeLink();

  void closeStyle(TextStyleMarker& marker);
  void handleUnterminatedStyleMarkers();
  [[nodiscard]] TextStyleMarker marker(ActiveMarker active) const noexcept;
  [[nodiscard]] std::size_t markerBegin(ActiveMarker active) const noexcept;
  void setMarker(ActiveMarker active, const TextStyleMarker& marker);

  [[nodiscard]] Reader readerHere() const noexcept;
  void addPendingText();
  void addTrimmedPendingText();
  void skipTo(std::size_t index) noexcept;
  void addEscape();

  Reader& reader_;
  Content& content_;
  std::string_view text_;
  std::size_t index_;
  std::size_t pendingStart_;
  Terminators terminators_;
  BlankCounter blanks_;
  ActiveStyles styles_;
  std::size_t firstOpenText_;
};

}  // namespace markdown
