#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// An address that was found well-formed: an absolute URL or a relative reference such as "foo". A plain
/// value.
class URL {
 public:
  /// Strict: only the characters of RFC 3986 may stand where it lets them stand. Characters outside ASCII are
  /// percent-encoded as UTF-8. Nothing for an empty text, blanks, control characters, a "%" without two hex
  /// digits behind it, bytes that aren't UTF-8, and a port that is no number.
  static std::optional<URL> parse(std::string_view text);
  /// As `parse`, for what a web engine reports: characters that may not stand where they do ("[", "|",
  /// blanks) are percent-encoded first, as the engine does on the wire.
  static std::optional<URL> parseReported(std::string_view text);

  /// The whole address; ASCII only.
  const std::string& absoluteString() const noexcept { return text_; }

  /// As it is written, without the colon; nothing in a relative reference.
  std::optional<std::string> scheme() const;
  /// As it is written, without user, port and the brackets of an IP literal; nothing if the address has no
  /// "//" part or an empty host.
  std::optional<std::string> host() const;
  /// As it is written, percent-encoding included; may be empty.
  std::string path() const;

  bool operator==(const URL&) const = default;

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace platform
