#include "MarkdownEngine/GraphemeClusters.h"

#include <unicode/uchar.h>

namespace markdown::graphemes {
namespace {

UGraphemeClusterBreak breakClass(char32_t scalar) noexcept {
  return static_cast<UGraphemeClusterBreak>(
      u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK));
}

bool isPictographic(char32_t scalar) noexcept {
  return u_hasBinaryProperty(static_cast<UChar32>(scalar), UCHAR_EXTENDED_PICTOGRAPHIC) != 0;
}

bool isControl(UGraphemeClusterBreak value) noexcept {
  return value == U_GCB_CONTROL || value == U_GCB_CR || value == U_GCB_LF;
}

bool isExtender(UGraphemeClusterBreak value) noexcept {
  return value == U_GCB_EXTEND || value == U_GCB_ZWJ || value == U_GCB_SPACING_MARK;
}

/// The large blocks in which no scalar joins an ASCII neighbour: Latin, Greek, the Cyrillic letters, general
/// punctuation without the joiners, symbols, kana, ideographs, Hangul syllables. A test holds them against
/// the library's tables.
bool isKnownSeparate(char32_t scalar) noexcept {
  return scalar < 0x300 || (scalar >= 0x370 && scalar < 0x483) || (scalar >= 0x48A && scalar < 0x591) ||
         (scalar >= 0x2010 && scalar < 0x20D0) || (scalar >= 0x2100 && scalar < 0x2CEF) ||
         (scalar >= 0x3000 && scalar < 0x302A) || (scalar >= 0x30A0 && scalar < 0xA66F) ||
         (scalar >= 0xAC00 && scalar < 0xD7A4) || (scalar >= 0x1F300 && scalar < 0x1F3FB) ||
         (scalar >= 0x1F400 && scalar < 0x20000);
}

/// Reads scalars from a boundary on and says where the next boundary stands. Everything that the rules ask
/// about what stands before a scalar lies behind that boundary, so that no text before it is looked at.
class BoundaryState {
 public:
  explicit BoundaryState(char32_t first) noexcept
      : previous_(breakClass(first)),
        isEmojiSequence_(isPictographic(first)),
        indicators_(previous_ == U_GCB_REGIONAL_INDICATOR ? 1 : 0) {}

  /// Whether `next` still belongs to the character.
  bool takes(char32_t next) noexcept {
    const UGraphemeClusterBreak value = breakClass(next);
    if (!joins(value, next)) return false;
    isEmojiSequence_ =
        (isEmojiSequence_ && (value == U_GCB_EXTEND || value == U_GCB_ZWJ)) || isPictographic(next);
    indicators_ = value == U_GCB_REGIONAL_INDICATOR ? indicators_ + 1 : 0;
    previous_ = value;
    return true;
  }

 private:
  bool joins(UGraphemeClusterBreak value, char32_t next) const noexcept {
    if (previous_ == U_GCB_CR && value == U_GCB_LF) return true;
    if (isControl(previous_) || isControl(value)) return false;
    if (previous_ == U_GCB_L &&
        (value == U_GCB_L || value == U_GCB_V || value == U_GCB_LV || value == U_GCB_LVT)) {
      return true;
    }
    if ((previous_ == U_GCB_LV || previous_ == U_GCB_V) && (value == U_GCB_V || value == U_GCB_T))
      return true;
    if ((previous_ == U_GCB_LVT || previous_ == U_GCB_T) && value == U_GCB_T) return true;
    if (isExtender(value) || previous_ == U_GCB_PREPEND) return true;
    if (previous_ == U_GCB_ZWJ && isEmojiSequence_ && isPictographic(next)) return true;
    return value == U_GCB_REGIONAL_INDICATOR && indicators_ % 2 == 1;
  }

  UGraphemeClusterBreak previous_;
  bool isEmojiSequence_;
  std::size_t indicators_;
};

/// Whether a boundary between the two is certain whatever stands before them.
bool alwaysSeparates(char32_t before, char32_t after) noexcept {
  const UGraphemeClusterBreak value = breakClass(after);
  if (value == U_GCB_REGIONAL_INDICATOR && breakClass(before) == U_GCB_REGIONAL_INDICATOR) return false;
  if (breakClass(before) == U_GCB_ZWJ && isPictographic(after)) return false;
  return !BoundaryState(before).takes(after);
}

}  // namespace

Scalar scalarAt(std::string_view text, std::size_t index) noexcept {
  const auto byte = [&](std::size_t offset) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[index + offset]));
  };
  const char32_t lead = byte(0);
  if (lead < 0x80) return {lead, index + 1};
  if (lead < 0xE0) return {(lead & 0x1F) << 6 | (byte(1) & 0x3F), index + 2};
  if (lead < 0xF0) return {(lead & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F), index + 3};
  return {(lead & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F), index + 4};
}

Scalar scalarBefore(std::string_view text, std::size_t end) noexcept {
  std::size_t start = end - 1;
  while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
  return {scalarAt(text, start).value, start};
}

bool extendsPrevious(std::string_view text, std::size_t index) noexcept {
  const char32_t scalar = scalarAt(text, index).value;
  return !isKnownSeparate(scalar) && isExtender(breakClass(scalar));
}

bool prependsNext(std::string_view text, std::size_t end) noexcept {
  const char32_t scalar = scalarBefore(text, end).value;
  return !isKnownSeparate(scalar) && breakClass(scalar) == U_GCB_PREPEND;
}

std::size_t characterEnd(std::string_view text, std::size_t start) noexcept {
  const bool isLastOrBeforeAscii = start + 1 == text.size() || isAscii(text[start + 1]);
  if (isAscii(text[start]) && isLastOrBeforeAscii) {
    const bool isLineEndOfTwo = text[start] == '\r' && start + 1 < text.size() && text[start + 1] == '\n';
    return start + (isLineEndOfTwo ? 2 : 1);
  }
  Scalar scalar = scalarAt(text, start);
  BoundaryState state(scalar.value);
  while (scalar.end < text.size()) {
    const Scalar next = scalarAt(text, scalar.end);
    if (!state.takes(next.value)) break;
    scalar = next;
  }
  return scalar.end;
}

std::size_t characterStart(std::string_view text, std::size_t end) noexcept {
  if (end >= 2 && isAscii(text[end - 1]) && isAscii(text[end - 2])) {
    return text[end - 1] == '\n' && text[end - 2] == '\r' ? end - 2 : end - 1;
  }
  Scalar scalar = scalarBefore(text, end);
  while (scalar.end > 0) {
    const Scalar before = scalarBefore(text, scalar.end);
    if (alwaysSeparates(before.value, scalar.value)) break;
    scalar = before;
  }
  std::size_t start = scalar.end;
  for (std::size_t next = characterEnd(text, start); next < end; next = characterEnd(text, next))
    start = next;
  return start;
}

Whitespace whitespaceBeyondAscii(std::string_view text, std::size_t index) noexcept {
  const char32_t scalar = scalarAt(text, index).value;
  if (!isWhitespace(scalar)) return {};
  return {isNewline(scalar) ? Whitespace::Kind::newline : Whitespace::Kind::sameLine,
          characterEnd(text, index)};
}

Whitespace whitespaceAtScalar(std::string_view text, std::size_t index) noexcept {
  const Whitespace found = whitespaceAt(text, index);
  const bool isInsideCharacter = found.kind == Whitespace::Kind::sameLine && text[index] != '\t' &&
                                 index > 0 && !isAscii(text[index - 1]) && prependsNext(text, index);
  return isInsideCharacter ? Whitespace{} : found;
}

}  // namespace markdown::graphemes
