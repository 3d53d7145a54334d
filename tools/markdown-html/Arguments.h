#pragma once

#include <optional>
#include <span>
#include <string>

/// What the tool was asked to do.
struct Arguments {
  bool isDark = false;
  bool isJson = false;
  bool isPage = false;
  bool isBatch = false;
  bool isHelp = false;

  /// Absent if an argument is unknown or contradicts another; `problem` then says which.
  [[nodiscard]] static std::optional<Arguments> parse(std::span<const char* const> arguments,
                                                      std::string& problem);
};

inline constexpr const char* usage =
    "Usage: markdown-html [--dark] [--json | --page] [--batch]\n"
    "Reads Markdown in UTF-8 from standard input and writes its HTML to standard output, with no newline "
    "added.\n"
    "  --dark   for the dark appearance\n"
    "  --json   an object with \"html\", \"metadata\" and, if there is one, \"title\"\n"
    "  --page   the whole page, with its style sheet and script\n"
    "  --batch  documents, and what is made of them, are separated by one NUL byte each\n";
