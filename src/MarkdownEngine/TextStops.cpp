#include "MarkdownEngine/TextStops.h"

#include "MarkdownEngine/ByteVector.h"
#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/GraphemeClusters.h"

#include <bit>
#include <cstdint>

namespace markdown {
namespace {

constexpr ByteSet stops{"\t\n\v\f\r*_~<>&`[]!|\\"};
/// The first bytes of white space beyond ASCII, all of it.
constexpr ByteSet whitespaceLeads{"\xC2\xE1\xE2\xE3"};

bool isWhitespaceBeyondAscii(std::string_view text, std::size_t index) noexcept {
  return whitespaceLeads.contains(text[index]) && isWhitespace(graphemes::scalarAt(text, index).value);
}

bool isStop(std::string_view text, std::size_t index) noexcept {
  const char byte = text[index];
  if (!isAscii(byte)) return isWhitespaceBeyondAscii(text, index);
  if (byte != ' ') return stops.contains(byte);
  const std::size_t next = index + 1;
  if (next == text.size()) return true;
  if (isAscii(text[next])) return isWhitespace(static_cast<unsigned char>(text[next]));
  return isWhitespaceBeyondAscii(text, next) || graphemes::extendsPrevious(text, next);
}

/// The first bytes of letters that are neither white space nor joined to a blank before them: Latin, Greek,
/// the Cyrillic letters, most ideographs. A test holds them against the Unicode tables.
ByteVector isPlainLead(ByteVector bytes) noexcept {
  return asBytes(((bytes - 0xC3) <= (0xCB - 0xC3)) | ((bytes - 0xCE) <= (0xD1 - 0xCE)) |
                 ((bytes - 0xE4) <= (0xE9 - 0xE4)));
}

/// Sets every byte of the result that may be a stop.
ByteVector candidates(const char* data) noexcept {
  const auto bytes = loadBytes(data);
  const auto following = loadBytes(data + 1);
  // A signed byte is below "!" if it is a blank, a control, or not ASCII.
  const auto isFollowedByLetter =
      asBytes(reinterpret_cast<SignedByteVector>(following) >= '!') | isPlainLead(following);
  const auto isBlank = asBytes(bytes == ' ') & ~isFollowedByLetter;
  const auto isControl = bytes < ' ';
  const auto isBracketOrBackslash = (bytes - '[') <= ('`' - '[');
  const auto isPipeOrTilde = (bytes - '|') <= ('~' - '|');
  const auto isAngle = (bytes & 0xFD) == '<';
  const auto isOther = (bytes == '*') | (bytes == '&') | (bytes == '!');
  const auto isWhitespaceLead = (bytes == 0xC2) | ((bytes - 0xE1) <= (0xE3 - 0xE1));
  return isBlank |
         asBytes(isControl | isBracketOrBackslash | isPipeOrTilde | isAngle | isOther | isWhitespaceLead);
}

/// The first stop among the eight bytes at `index` whose candidates are set in `word`, or npos.
std::size_t firstStop(std::string_view text, std::size_t index, std::uint64_t word) noexcept {
  constexpr unsigned bitsPerByte = 8;
  while (word != 0) {
    const bool isLittle = std::endian::native == std::endian::little;
    const auto bits = static_cast<unsigned>(isLittle ? std::countr_zero(word) : std::countl_zero(word));
    const std::size_t candidate = index + bits / bitsPerByte;
    if (isStop(text, candidate)) return candidate;
    const unsigned shift = bits / bitsPerByte * bitsPerByte;
    word &= ~(isLittle ? std::uint64_t{0xFF} << shift : std::uint64_t{0xFF} << (64 - bitsPerByte) >> shift);
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t findTextStop(std::string_view text, std::size_t from) noexcept {
  constexpr std::size_t half = sizeof(std::uint64_t);
  std::size_t index = from;
  // One byte behind the vector is looked at too.
  for (; index + byteVectorSize < text.size(); index += byteVectorSize) {
    const ByteWords found = words(candidates(text.data() + index));
    if ((found.first | found.second) == 0) continue;
    std::size_t stop = firstStop(text, index, found.first);
    if (stop == std::string_view::npos) stop = firstStop(text, index + half, found.second);
    if (stop != std::string_view::npos) return stop;
  }
  while (index < text.size() && !isStop(text, index)) ++index;
  return index;
}

}  // namespace markdown
