#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/ModifierCollection.h"
#include "MarkdownEngine/Reader.h"

#include <map>
#include <optional>
#include <string>

namespace markdown {

/// The header of a document: lines "key: value" between two lines of three dashes. A line without a colon
/// goes on with the value before it; a key without a value is dropped.
struct Metadata {
  std::map<std::string, std::string> values;

  [[nodiscard]] static std::optional<Metadata> read(Reader& reader, Content& content);
  [[nodiscard]] Metadata applyingModifiers(const ModifierCollection& modifiers) const;
};

}  // namespace markdown
