#pragma once

#include "MarkdownEngine/ModifierCollection.h"
#include "unit/MarkdownEngine/reference/ReferenceReader.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace markdown::reference {

/// What an element needs to write itself.
struct Output {
  const std::map<std::string, std::string>& urlsByName;
  const ModifierCollection& modifiers;
};

/// An element of the text, inline or block.
class Element {
 public:
  virtual ~Element() = default;
  virtual std::string html(const Output& output) const = 0;
  virtual std::string plainText() const = 0;
  virtual Modifier::Target modifierTarget() const = 0;
  std::string modifiedHtml(const Output& output, const std::string& raw) const;
};

enum class Style { italic, bold, strikethrough };

struct Marker {
  Style style = Style::italic;
  std::string rawMarkers;
  std::size_t begin = 0;
  std::size_t end = 0;
  bool isClosing = false;
  bool isValid = true;
  std::string prefix;
  std::string suffix;

  std::string html() const;
};

struct Linebreak {};
struct PlacedElement {
  std::shared_ptr<const Element> element;
  std::string raw;
};
using Component = std::variant<std::string, std::shared_ptr<Marker>, PlacedElement, Linebreak>;

struct Text {
  std::vector<Component> components;

  std::string html(const Output& output) const;
  std::string plainText() const;
  void append(const Text& other, const std::string& separator = "");
};

Text readText(ReferenceReader& reader, std::string_view terminators = "");
Text readTextLine(ReferenceReader& reader);

/// Runs `read` unless a backslash stands right before the position, and puts the reader back if it fails.
template <typename Read>
auto readOrRewind(ReferenceReader& reader, Read read) {
  if (reader.previousIs("\\")) throw ReadError{};
  const ReferenceReader saved = reader;
  try {
    return read(reader);
  } catch (const ReadError&) {
    reader = saved;
    throw;
  }
}

/// The escape of a character, or the character.
std::string escaped(const Character& character);

std::shared_ptr<const Element> readImage(ReferenceReader& reader);
std::shared_ptr<const Element> readHtml(ReferenceReader& reader);

}  // namespace markdown::reference
