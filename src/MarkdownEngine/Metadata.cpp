#include "MarkdownEngine/Metadata.h"

namespace markdown {

std::optional<Metadata> Metadata::read(Reader& reader, Content& /*content*/) {
  constexpr std::size_t dashes = 3;
  if (reader.readCount('-') != dashes || !reader.read('\n')) return std::nullopt;
  Metadata metadata;
  std::string* lastValue = nullptr;
  while (true) {
    reader.discardWhitespacesAndNewlines();
    if (reader.didReachEnd()) return std::nullopt;
    if (reader.isAt('-')) {
      if (reader.readCount('-') != dashes) return std::nullopt;
      return metadata;
    }
    const auto key = trimmingWhitespaces(*reader.readUntil(':', {.required = false}));
    const auto previous = reader.previousCharacter();
    if (previous != ":") {
      if (lastValue != nullptr) lastValue->append(" ").append(key);
      continue;
    }
    const auto value = trimmingWhitespaces(reader.readUntilEndOfLine());
    if (value.empty()) continue;
    lastValue = &metadata.values[std::string(key)];
    lastValue->assign(value);
  }
}

Metadata Metadata::applyingModifiers(const ModifierCollection& modifiers) const {
  Metadata result = *this;
  modifiers.applyModifiers(Modifier::Target::metadataKeys, [&](const Modifier& modifier) {
    for (const auto& [key, value] : std::map(result.values)) {
      result.values.erase(key);
      result.values.insert_or_assign(modifier.closure(key, key), value);
    }
  });
  modifiers.applyModifiers(Modifier::Target::metadataValues, [&](const Modifier& modifier) {
    for (auto& entry : result.values) entry.second = modifier.closure(entry.second, entry.second);
  });
  return result;
}

}  // namespace markdown
