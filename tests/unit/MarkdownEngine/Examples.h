#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace markdown::tests {

/// A piece of Markdown and the HTML that it must give.
struct Example {
  /// The file, the line and the last comment before the example.
  std::string name;
  std::string markdown;
  std::string html;
};

/// All examples of the data folder, in the order of their files' names. Throws std::runtime_error, naming
/// file and line, for a file that isn't written as its README tells.
[[nodiscard]] std::vector<Example> readExamples();

/// The text between the quotes of an example's line, with its escapes resolved.
[[nodiscard]] std::string unquoted(std::string_view line);

}  // namespace markdown::tests
