#include "UserData/JsonDocument.h"

#include "Platform/UTF8.h"
#include "Platform/WholeFile.h"

#include <utility>

namespace velkin {

namespace {

bool isWellFormed(std::string_view text) {
  while (!text.empty()) {
    if (!platform::takeCharacter(text)) return false;
  }
  return true;
}

}  // namespace

tl::expected<JsonDocument, JsonDocument::Failure> JsonDocument::read(const std::string& path) {
  auto contents = platform::readWholeFile(path, maximumBytes);
  if (!contents) return tl::unexpected(Failure{contents.error().why, false});
  if (!isWellFormed(contents->bytes)) return tl::unexpected(Failure{"it is not UTF-8", true});
  return JsonDocument{std::move(contents->bytes)};
}

tl::expected<void, std::string> JsonDocument::write(const std::string& path) const {
  const auto written = platform::replaceFile(path, text);
  if (!written) return tl::unexpected(written.error().why);
  return {};
}

}  // namespace velkin
