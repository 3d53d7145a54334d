#pragma once

#include "Platform/NSSavePanel.h"

#include <optional>
#include <string>
#include <vector>

#include <tl/expected.hpp>

namespace velkin {

/// The text of a settings file, as dialogues for files pass it on.
struct JsonDocument {
  std::string text;

  static std::vector<platform::NSFileType> readableContentTypes() { return {{"JSON", "json"}}; }
  /// The longest file that is read; an export has a few kilobytes and the scratchpad's text.
  static constexpr std::size_t maximumBytes = std::size_t{64} << 20U;

  /// Why a file isn't read, in words; or that it was, and isn't UTF-8.
  struct Failure {
    std::string why;
    bool isRead = false;
  };
  static tl::expected<JsonDocument, Failure> read(const std::string& path);
  /// Puts a file for its owner only in the place of `path`; whatever fails, an earlier one stays whole. The
  /// error in words.
  tl::expected<void, std::string> write(const std::string& path) const;

  bool operator==(const JsonDocument&) const = default;
};

}  // namespace velkin
