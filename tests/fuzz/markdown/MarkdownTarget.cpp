#include "MarkdownEngine/MarkdownParser.h"
#include "MarkdownEngine/ValidUtf8.h"
#include "unit/MarkdownEngine/reference/ReferenceEngine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

std::vector<markdown::Modifier> modifiersThatChangeNothing() {
  std::vector<markdown::Modifier> modifiers;
  for (std::size_t target = 0; target < markdown::Modifier::targetCount; ++target) {
    modifiers.push_back({static_cast<markdown::Modifier::Target>(target),
                         [](const std::string& html, std::string_view) { return html; }});
  }
  return modifiers;
}

/// The literal engine takes twice the time for each bracket that opens no link.
bool isShortEnoughForReference(std::string_view text) {
  constexpr std::size_t maxSize = 400;
  constexpr std::ptrdiff_t maxBrackets = 9;
  return text.size() <= maxSize && std::count(text.begin(), text.end(), '[') <= maxBrackets;
}

}  // namespace

/// Whatever the bytes: no crash, no read outside of them, and HTML in valid UTF-8, the same that the literal
/// engine writes. The other ways through the
/// engine lead to the same HTML: through `parse`, and with modifiers, for which the text is read twice.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const markdown::MarkdownParser parser;
  static const markdown::MarkdownParser modifying(modifiersThatChangeNothing());
  // Exactly as long as the input, so that a read behind it is seen.
  const std::vector<char> exact(data, data + size);
  const std::string_view input(exact.data(), exact.size());

  const std::string html = parser.html(input);
  require(markdown::ValidUtf8(html).wasValid(), "the HTML is valid UTF-8");
  const markdown::Markdown parsed = parser.parse(input);
  require(parsed.html == html, "parse and html give the same HTML");
  const markdown::ValidUtf8 valid(input);
  if (isShortEnoughForReference(valid.text())) {
    const auto expected = markdown::reference::parse(valid.text(), {}, {});
    require(expected.html == html, "the literal engine writes the same HTML");
    require(expected.metadata == parsed.metadata, "the literal engine reads the same metadata");
    require(expected.title == parsed.title(), "the literal engine finds the same title");
  }
  require(modifying.html(input) == html, "modifiers that change nothing change nothing");
  return 0;
}
