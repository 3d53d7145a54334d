#include "MarkdownEngine/ValidUtf8.h"

#include <cstdint>
#include <cstring>

namespace markdown {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Sequence {
  std::size_t length;
  bool isValid;
};

/// The sequence that begins at `index`: a scalar, or the longest piece that could still have become one.
Sequence sequenceAt(std::string_view text, std::size_t index) noexcept {
  const auto byte = [&](std::size_t offset) { return static_cast<unsigned char>(text[index + offset]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {1, true};
  if (lead < 0xC2 || lead > 0xF4) return {1, false};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte's range keeps overlong forms, surrogates and what lies beyond U+10FFFF out.
  const unsigned least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (std::size_t offset = 1; offset < length; ++offset) {
    if (index + offset == text.size()) return {offset, false};
    const unsigned next = byte(offset);
    const bool isInRange = offset == 1 ? next >= least && next <= most : next >= 0x80 && next <= 0xBF;
    if (!isInRange) return {offset, false};
  }
  return {length, true};
}

/// The first position from `index` on with a byte beyond ASCII.
std::size_t skipAscii(std::string_view text, std::size_t index) noexcept {
  constexpr std::uint64_t beyondAscii = 0x8080808080808080U;
  std::uint64_t words[2];
  while (index + sizeof words <= text.size()) {
    std::memcpy(words, text.data() + index, sizeof words);
    if (((words[0] | words[1]) & beyondAscii) != 0) break;
    index += sizeof words;
  }
  while (index < text.size() && static_cast<unsigned char>(text[index]) < 0x80) ++index;
  return index;
}

/// The first position from `index` on at which no scalar begins.
std::size_t skipValid(std::string_view text, std::size_t index) noexcept {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const auto isContinuation = [&](std::size_t at) { return (byte(at) & 0xC0) == 0x80; };
  while (true) {
    index = skipAscii(text, index);
    // Letters of two and three bytes follow one another; most of them need no closer look.
    while (index + 2 < text.size() && byte(index) >= 0xC2) {
      const unsigned lead = byte(index);
      if (lead < 0xE0) {
        if (!isContinuation(index + 1)) break;
        index += 2;
      } else if (lead > 0xE0 && lead < 0xED) {
        if (!isContinuation(index + 1) || !isContinuation(index + 2)) break;
        index += 3;
      } else {
        break;
      }
      // Between words there is one byte of ASCII.
      if (index < text.size() && byte(index) < 0x80) ++index;
    }
    if (index == text.size()) return index;
    const Sequence sequence = sequenceAt(text, index);
    if (!sequence.isValid) return index;
    index += sequence.length;
  }
}

}  // namespace

ValidUtf8::ValidUtf8(std::string_view text) : given_(text) {
  std::size_t bad = skipValid(text, 0);
  wasValid_ = bad == text.size();
  if (wasValid_) return;
  repaired_.reserve(text.size() + text.size() / 8);
  std::size_t start = 0;
  while (bad < text.size()) {
    repaired_.append(text.substr(start, bad - start));
    repaired_.append(replacement);
    start = bad + sequenceAt(text, bad).length;
    bad = skipValid(text, start);
  }
  repaired_.append(text.substr(start));
}

}  // namespace markdown
