#include "Platform/SwayFrames.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

constexpr std::string_view magic = "i3-ipc";
/// The numbers are in the machine's own order: both sides are on it.
constexpr std::size_t headerSize = magic.size() + 2 * sizeof(std::uint32_t);

void append(std::string& bytes, std::uint32_t number) {
  char raw[sizeof number];
  std::memcpy(raw, &number, sizeof number);
  bytes.append(raw, sizeof number);
}

std::uint32_t numberAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

}  // namespace

std::string frameOf(const SwayMessage& message) {
  std::string bytes(magic);
  append(bytes, static_cast<std::uint32_t>(message.text.size()));
  append(bytes, static_cast<std::uint32_t>(message.type));
  return bytes + message.text;
}

void SwayFrames::add(std::string_view bytes) {
  if (isBroken_) return;
  bytes_ += bytes;
  // What can't become a message any more isn't waited for.
  const auto known = std::min(bytes_.size(), magic.size());
  isBroken_ = bytes_.compare(0, known, magic, 0, known) != 0 ||
              (bytes_.size() >= headerSize && numberAt(bytes_, magic.size()) > mostBytes);
  if (isBroken_) bytes_.clear();
}

std::optional<SwayMessage> SwayFrames::next() {
  if (bytes_.size() < headerSize) return std::nullopt;
  const std::size_t length = numberAt(bytes_, magic.size());
  if (bytes_.size() - headerSize < length) return std::nullopt;
  SwayMessage message{static_cast<SwayMessage::Type>(numberAt(bytes_, magic.size() + sizeof(std::uint32_t))),
                      bytes_.substr(headerSize, length)};
  bytes_.erase(0, headerSize + length);
  // The header of the one behind it.
  add({});
  return message;
}

}  // namespace platform
