#include "MarkdownEngine/ValidUtf8.h"

#include "MarkdownEngine/ByteVector.h"

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

/// Whether no byte of the vector at `data` is wrong behind the three bytes before it. What a sequence still
/// lacks at the vector's end is not looked at.
bool isValidVector(const char* data) noexcept {
  const auto bytes = loadBytes(data);
  const auto before = loadBytes(data - 1);
  const auto isContinuation = asBytes((bytes & 0xC0) == 0x80);
  const auto isAwaited =
      asBytes((before >= 0xC0) | (loadBytes(data - 2) >= 0xE0) | (loadBytes(data - 3) >= 0xF0));
  const auto isNoLead = asBytes((bytes == 0xC0) | (bytes == 0xC1) | (bytes > 0xF4));
  // Overlong forms, surrogates, and what lies beyond U+10FFFF.
  const auto isOutOfRange =
      asBytes(((before == 0xE0) & (bytes < 0xA0)) | ((before == 0xED) & (bytes > 0x9F)) |
              ((before == 0xF0) & (bytes < 0x90)) | ((before == 0xF4) & (bytes > 0x8F)));
  const ByteWords wrong = words((isContinuation ^ isAwaited) | isNoLead | isOutOfRange);
  return (wrong.first | wrong.second) == 0;
}

/// Whether the vector at `data` and the three bytes before it are ASCII.
bool isAsciiVector(const char* data) noexcept {
  constexpr std::uint64_t beyondAscii = 0x8080808080808080U;
  std::uint64_t before = 0;
  std::memcpy(&before, data - 3, sizeof before);
  const ByteWords bytes = words(loadBytes(data));
  return ((before | bytes.first | bytes.second) & beyondAscii) == 0;
}

/// Goes over valid text from `index`, where a sequence begins behind at least three bytes of valid ones; ends
/// where one begins.
std::size_t skipValidVectors(std::string_view text, std::size_t index) noexcept {
  std::size_t end = index;
  while (end + byteVectorSize <= text.size() &&
         (isAsciiVector(text.data() + end) || isValidVector(text.data() + end))) {
    end += byteVectorSize;
  }
  if (end == index) return index;
  // The last sequence may go on behind the last vector.
  std::size_t start = end - 1;
  while (start > index && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
  return start;
}

/// The first position from `start` on, where a sequence begins, at which no scalar begins.
std::size_t skipValid(std::string_view text, std::size_t start) noexcept {
  constexpr std::size_t lookedAtBefore = 3;
  bool areVectorsSkipped = false;
  std::size_t index = start;
  while (index < text.size()) {
    if (!areVectorsSkipped && index >= start + lookedAtBefore) {
      // What stops this is bad, or shorter than a vector.
      index = skipValidVectors(text, index);
      areVectorsSkipped = true;
    }
    const Sequence sequence = sequenceAt(text, index);
    if (!sequence.isValid) return index;
    index += sequence.length;
  }
  return index;
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
