#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// One message of sway's interface for other programs, to it or from it. Its text is JSON or a command.
struct SwayMessage {
  enum class Type : std::uint32_t { runCommand = 0, getWorkspaces = 1, getOutputs = 3, getTree = 4 };
  Type type = Type::runCommand;
  std::string text;
  bool operator==(const SwayMessage&) const = default;
};

/// The bytes that carry a message.
std::string frameOf(const SwayMessage& message);

/// Makes messages of the bytes that come from sway, however they are cut.
class SwayFrames {
 public:
  /// A desktop with hundreds of windows is described by less.
  static constexpr std::size_t mostBytes = std::size_t{1} << 20U;

  void add(std::string_view bytes);
  /// The next whole message; nothing while there is none.
  std::optional<SwayMessage> next();
  /// True once something came that is no message, or a longer one than is taken. Nothing comes after that.
  bool isBroken() const noexcept { return isBroken_; }

 private:
  std::string bytes_;
  bool isBroken_ = false;
};

}  // namespace platform
