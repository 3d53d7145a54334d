#include "Platform/UTF8.h"

#include <cstdint>

namespace platform {

namespace {

/// What the first byte of a sequence says about the bytes after it.
struct Lead {
  int continuations;
  std::uint8_t firstMin;
  std::uint8_t firstMax;
  char32_t bits;
};

std::optional<Lead> leadOf(std::uint8_t byte) noexcept {
  if (byte < 0x80) return Lead{0, 0, 0, byte};
  if (byte < 0xC2 || byte > 0xF4) return std::nullopt;
  if (byte < 0xE0) return Lead{1, 0x80, 0xBF, byte & 0x1FU};
  // The second byte's range is what keeps overlong forms, surrogates and values beyond U+10FFFF out.
  if (byte < 0xF0) {
    return Lead{2, static_cast<std::uint8_t>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(byte == 0xED ? 0x9F : 0xBF), byte & 0x0FU};
  }
  return Lead{3, static_cast<std::uint8_t>(byte == 0xF0 ? 0x90 : 0x80),
              static_cast<std::uint8_t>(byte == 0xF4 ? 0x8F : 0xBF), byte & 0x07U};
}

}  // namespace

std::optional<char32_t> takeCharacter(std::string_view& text) noexcept {
  const auto lead = leadOf(static_cast<std::uint8_t>(text.front()));
  text.remove_prefix(1);
  if (!lead) return std::nullopt;
  char32_t character = lead->bits;
  for (int i = 0; i < lead->continuations; ++i) {
    const auto byte = text.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(text.front());
    const std::uint8_t min = i == 0 ? lead->firstMin : 0x80;
    const std::uint8_t max = i == 0 ? lead->firstMax : 0xBF;
    if (byte < min || byte > max) return std::nullopt;
    character = (character << 6U) | (byte & 0x3FU);
    text.remove_prefix(1);
  }
  return character;
}

void appendUTF8(std::string& text, char32_t character) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0U | (character >> 6U));
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0U | (character >> 12U));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0U | (character >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string withoutNulCharacters(std::string text) {
  for (auto at = text.find('\0'); at != std::string::npos; at = text.find('\0', at)) {
    text.replace(at, 1, "\uFFFD");
  }
  return text;
}

std::string wellFormed(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto before = text;
    const auto character = takeCharacter(text);
    if (character && *character != 0) {
      result.append(before.substr(0, before.size() - text.size()));
    } else {
      appendUTF8(result, replacementCharacter);
    }
  }
  return result;
}

}  // namespace platform
