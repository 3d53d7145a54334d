#include "unit/MarkdownEngine/reference/ReferenceText.h"

#include <algorithm>

namespace markdown::reference {
namespace {

class Link : public Element {
 public:
  Text text;
  std::string url;
  std::optional<std::string> reference;

  std::string address(const Output& output) const {
    if (!reference) return url;
    const auto found = output.urlsByName.find(lowercased(*reference));
    return found == output.urlsByName.end() ? *reference : found->second;
  }
  std::string html(const Output& output) const override {
    return "<a href=\"" + address(output) + "\">" + text.html(output) + "</a>";
  }
  std::string plainText() const override { return text.plainText(); }
  Modifier::Target modifierTarget() const override { return Modifier::Target::links; }

  static std::shared_ptr<const Link> read(ReferenceReader& reader) {
    auto link = std::make_shared<Link>();
    reader.read("[");
    link->text = readText(reader, "]");
    reader.read("]");
    if (reader.didReachEnd()) throw ReadError{};
    if (reader.currentCharacter().is("(")) {
      reader.advanceIndex();
      link->url = reader.readUntil(")", {.balanceAgainst = "("});
    } else {
      reader.read("[");
      link->reference = reader.readUntil("]", {});
    }
    return link;
  }
};

class Image : public Element {
 public:
  std::shared_ptr<const Link> link;

  std::string html(const Output& output) const override {
    const std::string text = link->text.html(output);
    return "<img src=\"" + link->address(output) + "\"" + (text.empty() ? "" : " alt=\"" + text + "\"") +
           "/>";
  }
  std::string plainText() const override { return link->plainText(); }
  Modifier::Target modifierTarget() const override { return Modifier::Target::images; }
};

class InlineCode : public Element {
 public:
  std::string code;

  std::string html(const Output&) const override { return "<code>" + code + "</code>"; }
  std::string plainText() const override { return code; }
  Modifier::Target modifierTarget() const override { return Modifier::Target::inlineCode; }

  static std::shared_ptr<const InlineCode> read(ReferenceReader& reader) {
    auto result = std::make_shared<InlineCode>();
    reader.read("`");
    while (true) {
      if (reader.didReachEnd()) throw ReadError{};
      if (reader.currentCharacter().isNewline()) throw ReadError{};
      if (reader.currentCharacter().is("`")) {
        reader.advanceIndex();
        return result;
      }
      result->code += escaped(reader.currentCharacter());
      reader.advanceIndex();
    }
  }
};

class Html : public Element {
 public:
  std::string string;

  std::string html(const Output&) const override { return string; }
  std::string plainText() const override { return ""; }
  Modifier::Target modifierTarget() const override { return Modifier::Target::html; }
};

struct HtmlTag {
  std::string name;
  bool isSelfClosing = false;
};

HtmlTag readHtmlTag(ReferenceReader& reader) {
  reader.read("<");
  const std::size_t start = reader.currentIndex;
  while (true) {
    if (reader.didReachEnd()) throw ReadError{};
    if (reader.currentCharacter().isWhitespace() || reader.currentCharacter().is(">")) break;
    reader.advanceIndex();
  }
  if (reader.currentIndex == start) throw ReadError{};
  const std::size_t nameEnd = reader.currentIndex;
  const auto endsWithSlash = [&](std::size_t from, std::size_t to) {
    return from < to && reader.characters(to - 1, to) == "/";
  };
  reader.readUntil(">", {.allowLineBreaks = true});
  HtmlTag tag;
  if (endsWithSlash(start, nameEnd)) {
    tag.name = reader.characters(start, nameEnd - 1);
    tag.isSelfClosing = true;
    return tag;
  }
  tag.name = reader.characters(start, nameEnd);
  tag.isSelfClosing = endsWithSlash(nameEnd, reader.currentIndex - 1) || tag.name == "!--";
  return tag;
}

class TextParser {
 public:
  TextParser(ReferenceReader& reader, std::string_view terminators)
      : reader_(reader), terminators_(terminators), pendingStart_(reader.currentIndex) {}

  Text parse() {
    std::size_t blanks = 0;
    while (!reader_.didReachEnd()) {
      const Character current = reader_.currentCharacter();
      const auto next = reader_.nextCharacter();
      if (!terminators_.empty() && !reader_.previousIs("\\") && current.isAny(terminators_)) break;
      if (current.isNewline()) {
        addPendingTextIfNeeded(false);
        if (!next) break;
        if (reader_.previousIs("\\") || blanks >= 2) {
          text_.components.emplace_back(Linebreak{});
          skipCharacter();
          continue;
        }
        if (next->isAny("\n#<`-") || next->is("\r\n")) break;
        if (!next->isWhitespace()) text_.components.emplace_back(std::string(" "));
        skipCharacter();
        continue;
      }
      blanks = current.is(" ") ? blanks + 1 : 0;
      if (current.isSameLineWhitespace()) {
        if (!next) break;
        if (next->isWhitespace()) {
          addPendingTextIfNeeded(false);
          skipCharacter();
          continue;
        }
      }
      if (current.isAny("*_~")) {
        addPendingTextIfNeeded(false);
        try {
          parseStyleMarker();
        } catch (const ReadError&) {
          parseNonTriggeringCharacter();
        }
        continue;
      }
      if (current.is("<")) {
        if (!next) {
          reader_.advanceIndex();
          break;
        }
        if (next->is("p") || next->is("P")) break;
      }
      if (!current.isAny("`[!<")) {
        parseNonTriggeringCharacter();
        continue;
      }
      addPendingTextIfNeeded(false);
      try {
        const std::size_t start = reader_.currentIndex;
        PlacedElement placed;
        placed.element = readOrRewind(reader_, [&](ReferenceReader& r) -> std::shared_ptr<const Element> {
          if (current.is("`")) return InlineCode::read(r);
          if (current.is("[")) return Link::read(r);
          if (current.is("!")) return readImage(r);
          return readHtml(r);
        });
        placed.raw = reader_.characters(start, reader_.currentIndex);
        text_.components.emplace_back(std::move(placed));
        pendingStart_ = reader_.currentIndex;
      } catch (const ReadError&) {
        parseNonTriggeringCharacter();
      }
    }
    addPendingTextIfNeeded(true);
    handleUnterminatedStyleMarkers();
    return std::move(text_);
  }

 private:
  void addPendingTextIfNeeded(bool trimming) {
    if (pendingStart_ == reader_.endIndex()) return;
    std::string pending = reader_.characters(pendingStart_, reader_.currentIndex);
    if (trimming) pending = trimmingTrailingWhitespaces(pending);
    text_.components.emplace_back(std::move(pending));
    pendingStart_ = reader_.currentIndex;
  }

  void skipCharacter() {
    reader_.advanceIndex();
    pendingStart_ = reader_.currentIndex;
  }

  void parseNonTriggeringCharacter() {
    const Character current = reader_.currentCharacter();
    if (current.is("\\")) {
      addPendingTextIfNeeded(false);
      skipCharacter();
      return;
    }
    if (current.is("&")) {
      const std::size_t remembered = reader_.currentIndex;
      try {
        reader_.readUntil(";", {.allowWhitespace = false});
        addPendingTextIfNeeded(false);
        return;
      } catch (const ReadError&) {
        reader_.currentIndex = remembered;
      }
    }
    if (escaped(current) != current.bytes) {
      addPendingTextIfNeeded(false);
      text_.components.emplace_back(escaped(current));
      skipCharacter();
    } else {
      reader_.advanceIndex();
    }
  }

  static std::shared_ptr<Marker> readMarker(ReferenceReader& reader) {
    auto marker = std::make_shared<Marker>();
    marker->begin = reader.currentIndex;
    const Character first = reader.currentCharacter();
    if (first.isAny("*_")) {
      reader.advanceIndex();
      marker->rawMarkers = first.bytes;
      marker->style = Style::italic;
      if (!reader.didReachEnd() && reader.currentCharacter().isAny("*_")) {
        marker->rawMarkers += reader.currentCharacter().bytes;
        marker->style = Style::bold;
        reader.advanceIndex();
      }
    } else {
      reader.read("~");
      reader.read("~");
      marker->rawMarkers = "~~";
      marker->style = Style::strikethrough;
    }
    marker->end = reader.currentIndex;
    return marker;
  }

  void parseStyleMarker() {
    const auto marker = readOrRewind(reader_, readMarker);
    if (activeStyles_.count(marker->style) != 0) {
      closeStyle(marker);
    } else {
      activeStyles_.insert(marker->style);
      activeMarkers_.push_back(marker);
    }
    text_.components.emplace_back(marker);
    pendingStart_ = reader_.currentIndex;
  }

  void closeStyle(const std::shared_ptr<Marker>& marker) {
    if (marker->style == Style::bold && activeStyles_.count(Style::italic) != 0 && !reader_.didReachEnd() &&
        reader_.currentCharacter().isAny("*_")) {
      marker->style = Style::italic;
      marker->rawMarkers.pop_back();
      --reader_.currentIndex;
    }
    marker->isClosing = true;
    std::set<Style> closed;
    for (auto it = activeMarkers_.rbegin(); it != activeMarkers_.rend(); ++it) {
      closed.insert((*it)->style);
      if ((*it)->style == marker->style) break;
      (*it)->isValid = false;
    }
    activeMarkers_.resize(activeMarkers_.size() - closed.size());
    for (const Style style : closed) activeStyles_.erase(style);
  }

  void handleUnterminatedStyleMarkers() {
    std::shared_ptr<Marker> boldMarker;
    std::shared_ptr<Marker> italicMarker;
    if (activeStyles_.count(Style::bold) != 0 && activeStyles_.count(Style::italic) != 0) {
      for (const auto& marker : activeMarkers_) {
        if (marker->style == Style::bold) {
          marker->style = Style::italic;
          if (italicMarker) {
            if (marker->begin == italicMarker->end) {
              italicMarker = nullptr;
              break;
            }
            marker->suffix = marker->rawMarkers.substr(marker->rawMarkers.size() - 1);
            marker->rawMarkers.pop_back();
            marker->isClosing = true;
          } else {
            marker->prefix = marker->rawMarkers.substr(0, 1);
            marker->rawMarkers.erase(0, 1);
          }
          boldMarker = marker;
        } else if (marker->style == Style::italic) {
          if (boldMarker) {
            if (marker->begin == boldMarker->end) {
              if (!boldMarker->prefix.empty()) {
                boldMarker->rawMarkers = boldMarker->prefix + boldMarker->rawMarkers;
              } else {
                boldMarker->rawMarkers += boldMarker->suffix;
              }
              boldMarker = nullptr;
              break;
            }
            marker->isClosing = true;
          }
          italicMarker = marker;
        }
      }
    }
    for (const auto& marker : activeMarkers_) {
      if (marker != boldMarker && marker != italicMarker) marker->isValid = false;
    }
  }

  ReferenceReader& reader_;
  std::string_view terminators_;
  std::size_t pendingStart_;
  Text text_;
  std::set<Style> activeStyles_;
  std::vector<std::shared_ptr<Marker>> activeMarkers_;
};

}  // namespace

std::string Element::modifiedHtml(const Output& output, const std::string& raw) const {
  std::string result = html(output);
  output.modifiers.applyModifiers(modifierTarget(),
                                  [&](const Modifier& modifier) { result = modifier.closure(result, raw); });
  return result;
}

std::string Marker::html() const {
  if (!isValid) return rawMarkers;
  const char* const name = style == Style::italic ? "em" : style == Style::bold ? "strong" : "s";
  return prefix + (isClosing ? "</" : "<") + name + ">" + suffix;
}

std::string Text::html(const Output& output) const {
  std::string result;
  for (const auto& component : components) {
    if (const auto* text = std::get_if<std::string>(&component)) {
      result += *text;
    } else if (const auto* marker = std::get_if<std::shared_ptr<Marker>>(&component)) {
      result += (*marker)->html();
    } else if (const auto* placed = std::get_if<PlacedElement>(&component)) {
      result += placed->element->modifiedHtml(output, placed->raw);
    } else {
      result += "<br>";
    }
  }
  return result;
}

std::string Text::plainText() const {
  std::string result;
  for (const auto& component : components) {
    if (const auto* text = std::get_if<std::string>(&component)) {
      result += *text;
    } else if (const auto* placed = std::get_if<PlacedElement>(&component)) {
      result += placed->element->plainText();
    } else if (std::holds_alternative<Linebreak>(component)) {
      result += "\n";
    }
  }
  return result;
}

void Text::append(const Text& other, const std::string& separator) {
  if (!separator.empty()) components.emplace_back(separator);
  components.insert(components.end(), other.components.begin(), other.components.end());
}

Text readText(ReferenceReader& reader, std::string_view terminators) {
  return TextParser(reader, terminators).parse();
}

Text readTextLine(ReferenceReader& reader) {
  Text text = readText(reader, "\n");
  if (!reader.didReachEnd()) reader.advanceIndex();
  return text;
}

std::string escaped(const Character& character) {
  if (character.is("<")) return "&lt;";
  if (character.is(">")) return "&gt;";
  if (character.is("&")) return "&amp;";
  return character.bytes;
}

std::shared_ptr<const Element> readImage(ReferenceReader& reader) {
  auto image = std::make_shared<Image>();
  reader.read("!");
  image->link = Link::read(reader);
  return image;
}

std::shared_ptr<const Element> readHtml(ReferenceReader& reader) {
  auto result = std::make_shared<Html>();
  const std::size_t start = reader.currentIndex;
  const HtmlTag root = readHtmlTag(reader);
  if (!root.isSelfClosing) {
    long open = 1;
    while (!reader.didReachEnd()) {
      if (!reader.currentCharacter().is("<")) {
        reader.advanceIndex();
        continue;
      }
      try {
        const HtmlTag tag = readHtmlTag(reader);
        if (tag.name == root.name) {
          ++open;
          continue;
        }
        if (tag.name == "/" + root.name && --open <= 0) break;
      } catch (const ReadError&) {
        continue;
      }
    }
  }
  result->string = reader.characters(start, reader.currentIndex);
  return result;
}

}  // namespace markdown::reference
