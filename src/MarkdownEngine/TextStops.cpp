#include "MarkdownEngine/TextStops.h"

#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/GraphemeClusters.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace markdown {
namespace {

constexpr ByteSet stops{"\t\n\v\f\r*_~<>&`[]!|\\"};
/// The first bytes of white space beyond ASCII, all of it.
constexpr ByteSet whitespaceLeads{"\xC2\xE1\xE2\xE3"};

/// Sixteen bytes that are looked at together. The compilers turn what is done with them into the processor's
/// own operations on such vectors, whichever they are.
using Bytes = std::uint8_t __attribute__((vector_size(16)));
using SignedBytes = std::int8_t __attribute__((vector_size(16)));

template <typename Vector>
Vector load(const char* data) noexcept {
  Vector vector;
  std::memcpy(&vector, data, sizeof vector);
  return vector;
}

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

/// Sets every byte of the result that may be a stop.
Bytes candidates(const char* data) noexcept {
  const auto bytes = load<Bytes>(data);
  const auto following = load<SignedBytes>(data + 1);
  // A signed byte is below "!" if it is a blank, a control, or not ASCII.
  const auto isBlankToLookAt = (bytes == ' ') & reinterpret_cast<Bytes>(following < '!');
  const auto isControl = bytes < ' ';
  const auto isBracketOrBackslash = (bytes - '[') <= ('`' - '[');
  const auto isPipeOrTilde = (bytes - '|') <= ('~' - '|');
  const auto isAngle = (bytes & 0xFD) == '<';
  const auto isOther = (bytes == '*') | (bytes == '&') | (bytes == '!');
  const auto isWhitespaceLead = (bytes == 0xC2) | ((bytes - 0xE1) <= 2);
  return reinterpret_cast<Bytes>(isBlankToLookAt | isControl | isBracketOrBackslash | isPipeOrTilde |
                                 isAngle | isOther | isWhitespaceLead);
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
  // One byte behind the sixteen is looked at too.
  for (; index + sizeof(Bytes) < text.size(); index += sizeof(Bytes)) {
    const Bytes found = candidates(text.data() + index);
    std::uint64_t words[2];
    std::memcpy(words, &found, sizeof words);
    if ((words[0] | words[1]) == 0) continue;
    std::size_t stop = firstStop(text, index, words[0]);
    if (stop == std::string_view::npos) stop = firstStop(text, index + half, words[1]);
    if (stop != std::string_view::npos) return stop;
  }
  while (index < text.size() && !isStop(text, index)) ++index;
  return index;
}

}  // namespace markdown
