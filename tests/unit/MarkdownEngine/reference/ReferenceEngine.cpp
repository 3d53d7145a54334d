#include "unit/MarkdownEngine/reference/ReferenceEngine.h"

#include "unit/MarkdownEngine/reference/ReferenceText.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace markdown::reference {
namespace {

using ElementPtr = std::shared_ptr<const Element>;

std::string strippingTrailingMarkers(const std::string& text) {
  const auto characters = charactersOf(text);
  if (characters.empty()) return text;
  std::size_t index = characters.size() - 1;
  while (characters[index].is("#") && index > 0) --index;
  if (index == characters.size() - 1) return text;
  std::string result;
  for (std::size_t i = 0; i < index; ++i) result += characters[i].bytes;
  return result;
}

class Heading : public Element {
 public:
  std::size_t level = 0;
  Text text;

  std::string html(const Output& output) const override {
    const std::string number = std::to_string(level);
    std::string result = "<h";
    result.append(number).append(">").append(strippingTrailingMarkers(text.html(output)));
    return result.append("</h").append(number).append(">");
  }
  std::string plainText() const override { return strippingTrailingMarkers(text.plainText()); }
  Modifier::Target modifierTarget() const override { return Modifier::Target::headings; }

  static ElementPtr read(ReferenceReader& reader) {
    auto heading = std::make_shared<Heading>();
    heading->level = reader.readCount("#");
    if (heading->level == 0 || heading->level > 6) throw ReadError{};
    reader.readWhitespaces();
    heading->text = readText(reader, "\n");
    return heading;
  }
};

class Paragraph : public Element {
 public:
  Text text;

  std::string html(const Output& output) const override { return "<p>" + text.html(output) + "</p>"; }
  std::string plainText() const override { return text.plainText(); }
  Modifier::Target modifierTarget() const override { return Modifier::Target::paragraphs; }

  static ElementPtr read(ReferenceReader& reader) {
    auto paragraph = std::make_shared<Paragraph>();
    paragraph->text = readText(reader);
    return paragraph;
  }

  /// The text stops in front of "<p", where only an HTML element can begin. Where that was refused the "<" is
  /// text.
  static ElementPtr readFallback(ReferenceReader& reader) {
    const std::size_t start = reader.currentIndex;
    auto paragraph = std::make_shared<Paragraph>();
    paragraph->text = readText(reader);
    if (reader.currentIndex == start) {
      reader.advanceIndex();
      paragraph->text.components.assign(1, std::string("&lt;"));
      paragraph->text.append(readText(reader));
    }
    return paragraph;
  }
};

class HorizontalLine : public Element {
 public:
  std::string html(const Output&) const override { return "<hr>"; }
  std::string plainText() const override { return ""; }
  Modifier::Target modifierTarget() const override { return Modifier::Target::horizontalLines; }

  static ElementPtr read(ReferenceReader& reader) {
    const Character marker = reader.currentCharacter();
    if (!marker.isAny("-*")) throw ReadError{};
    if (reader.readCount(marker.bytes) <= 2) throw ReadError{};
    if (!reader.readUntilEndOfLine().empty()) throw ReadError{};
    return std::make_shared<HorizontalLine>();
  }
};

class Blockquote : public Element {
 public:
  Blockquote(const BlockquoteFrame& frame) : frame_(frame) {}
  Text text;

  std::string html(const Output& output) const override {
    return frame_.before + text.html(output) + frame_.after;
  }
  std::string plainText() const override { return text.plainText(); }
  Modifier::Target modifierTarget() const override { return Modifier::Target::blockquotes; }

  static ElementPtr read(ReferenceReader& reader, const BlockquoteFrame& frame) {
    auto quote = std::make_shared<Blockquote>(frame);
    reader.read(">");
    reader.readWhitespaces();
    quote->text = readTextLine(reader);
    while (!reader.didReachEnd()) {
      if (reader.currentCharacter().isNewline()) break;
      if (reader.currentCharacter().is(">")) reader.advanceIndex();
      quote->text.append(readTextLine(reader));
    }
    return quote;
  }

 private:
  const BlockquoteFrame& frame_;
};

class CodeBlock : public Element {
 public:
  std::string code;

  std::string html(const Output&) const override {
    return "<pre>\n" + code +
           "\n<button class=\"copy-button\" onclick=\"copyCode(this)\">Copy</button>\n</pre>";
  }
  std::string plainText() const override { return code; }
  Modifier::Target modifierTarget() const override { return Modifier::Target::codeBlocks; }

  static ElementPtr read(ReferenceReader& reader) {
    auto block = std::make_shared<CodeBlock>();
    const std::size_t fence = reader.readCount("`");
    if (fence < 3) throw ReadError{};
    reader.discardWhitespaces();
    reader.readUntilEndOfLine();
    bool endsWithLineFeed = false;
    while (!reader.didReachEnd()) {
      if (endsWithLineFeed && reader.currentCharacter().is("`")) {
        const std::size_t count = reader.readCount("`");
        if (count == fence) break;
        block->code += std::string(count, '`');
        if (reader.didReachEnd()) break;
      }
      endsWithLineFeed = reader.currentCharacter().is("\n");
      block->code += escaped(reader.currentCharacter());
      reader.advanceIndex();
    }
    return block;
  }
};

class HtmlBlock {
 public:
  static ElementPtr read(ReferenceReader& reader) { return readHtml(reader); }
};

class List : public Element {
 public:
  struct Item {
    Text text;
    std::shared_ptr<const List> nestedList;
  };
  bool isOrdered = false;
  long firstNumber = 1;
  Character listMarker;
  std::vector<Item> items;

  std::string html(const Output& output) const override {
    const std::string tag = isOrdered ? "ol" : "ul";
    std::string result = "<";
    result += tag;
    if (isOrdered && firstNumber != 1) result += " start=\"" + std::to_string(firstNumber) + "\"";
    result += ">";
    for (const auto& item : items) {
      result += "<li>" + item.text.html(output);
      if (item.nestedList) result += item.nestedList->html(output);
      result += "</li>";
    }
    return result + "</" + tag + ">";
  }
  std::string plainText() const override {
    std::string result;
    for (std::size_t i = 0; i < items.size(); ++i) {
      result += (i == 0 ? "" : ", ") + items[i].text.plainText();
    }
    return result;
  }
  Modifier::Target modifierTarget() const override { return Modifier::Target::lists; }

  static ElementPtr read(ReferenceReader& reader) {
    std::size_t indentation = 0;
    while (reader.previousCharacter() && reader.previousCharacter()->isSameLineWhitespace()) {
      --reader.currentIndex;
      ++indentation;
    }
    reader.advanceIndex(indentation);
    return read(reader, indentation, false);
  }

 private:
  static bool isNumber(const Character& character) { return character.isNumber(); }

  static bool standsAtItem(ReferenceReader reader) {
    try {
      if (reader.currentCharacter().isNumber()) {
        reader.readCharacters(isNumber, 9);
        reader.readCharacterIn(".)");
      } else {
        reader.readCharacterIn("-*+");
      }
      reader.readWhitespaces();
      return true;
    } catch (const ReadError&) {
      return false;
    }
  }

  static long numberFrom(const std::vector<Character>& digits) {
    long number = 0;
    for (const auto& digit : digits) {
      if (!digit.isAny("0123456789")) return 1;
      number = number * 10 + (digit.bytes[0] - '0');
    }
    return number;
  }

  void addTextToLastItem(ReferenceReader& reader) {
    if (items.empty()) throw ReadError{};
    items.back().text.append(readTextLine(reader), " ");
  }

  static std::shared_ptr<const List> read(ReferenceReader& reader, std::size_t indentation, bool isNested) {
    auto list = std::make_shared<List>();
    const std::size_t start = reader.currentIndex;
    if (reader.currentCharacter().isNumber()) {
      list->isOrdered = true;
      list->firstNumber = numberFrom(reader.readCharacters(isNumber, 9));
      list->listMarker = reader.readCharacterIn(".)");
    } else {
      list->listMarker = reader.currentCharacter();
    }
    reader.currentIndex = start;
    while (!reader.didReachEnd()) {
      const Character current = reader.currentCharacter();
      if (isNested && reader.previousCharacter()->isNewline() && standsAtItem(reader)) return list;
      if (current.isNewline()) return list;
      if (current.isSameLineWhitespace()) {
        if (list->items.empty()) {
          reader.readWhitespaces();
          continue;
        }
        const std::size_t itemIndentation = reader.readWhitespaces();
        if (itemIndentation < indentation) return list;
        if (itemIndentation == indentation) continue;
        if (reader.didReachEnd()) return list;
        const std::size_t remembered = reader.currentIndex;
        try {
          list->items.back().nestedList = read(reader, itemIndentation, true);
        } catch (const ReadError&) {
          reader.currentIndex = remembered;
          list->addTextToLastItem(reader);
        }
      } else if (current.isNumber()) {
        if (!list->isOrdered) {
          list->addTextToLastItem(reader);
          continue;
        }
        const std::size_t remembered = reader.currentIndex;
        try {
          reader.readCharacters(isNumber, 9);
          if (!(reader.readCharacterIn(".)") == list->listMarker)) {
            reader.currentIndex = remembered;
            return list;
          }
          reader.readWhitespaces();
          list->items.push_back({readTextLine(reader), nullptr});
        } catch (const ReadError&) {
          reader.currentIndex = remembered;
          list->addTextToLastItem(reader);
        }
      } else if (current.isAny("-*+")) {
        const auto next = reader.nextCharacter();
        if (!next || !next->isSameLineWhitespace()) {
          list->addTextToLastItem(reader);
          continue;
        }
        if (!(current == list->listMarker)) return list;
        reader.advanceIndex();
        reader.readWhitespaces();
        list->items.push_back({readTextLine(reader), nullptr});
      } else {
        list->addTextToLastItem(reader);
      }
    }
    return list;
  }
};

class Table : public Element {
 public:
  using Row = std::vector<Text>;
  std::optional<Row> header;
  std::vector<Row> rows;
  std::size_t columnCount = 0;
  std::vector<std::string> alignments;

  std::string html(const Output& output) const override {
    std::string result = "<table>";
    if (header) result += "<thead>" + rowHtml(*header, "th", output) + "</thead>";
    if (!rows.empty()) {
      result += "<tbody>";
      for (const auto& row : rows) result += rowHtml(row, "td", output);
      result += "</tbody>";
    }
    return result + "</table>";
  }
  std::string plainText() const override {
    std::string result;
    if (header) result += rowText(*header);
    for (const auto& row : rows) {
      if (!result.empty()) result += "\n";
      result += rowText(row);
    }
    return result;
  }
  Modifier::Target modifierTarget() const override { return Modifier::Target::tables; }

  static ElementPtr read(ReferenceReader& reader) {
    auto table = std::make_shared<Table>();
    while (!reader.didReachEnd() && !reader.currentCharacter().isNewline() &&
           reader.currentCharacter().is("|")) {
      table->rows.push_back(readRow(reader));
      table->columnCount = std::max(table->columnCount, table->rows.back().size());
    }
    if (table->rows.empty()) throw ReadError{};
    table->formHeader();
    return table;
  }

 private:
  static void readDelimiter(ReferenceReader& reader) {
    reader.read("|");
    reader.discardWhitespaces();
  }

  static Row readRow(ReferenceReader& reader) {
    Row row;
    readDelimiter(reader);
    while (!reader.didReachEnd()) {
      Text cell = readText(reader, "|\n");
      readDelimiter(reader);
      row.push_back(std::move(cell));
      if (!reader.didReachEnd() && reader.currentCharacter().isNewline()) {
        reader.advanceIndex();
        return row;
      }
    }
    return row;
  }

  void formHeader() {
    if (rows.size() < 2 || rows[0].size() != rows[1].size()) return;
    std::vector<std::string> found;
    for (const auto& cell : rows[1]) {
      const auto characters = charactersOf(cell.plainText());
      for (const auto& character : characters) {
        if (!character.isAny("-:")) return;
      }
      const bool first = !characters.empty() && characters.front().is(":");
      const bool last = !characters.empty() && characters.back().is(":");
      found.emplace_back(first && last ? " align=\"center\""
                         : first       ? " align=\"left\""
                         : last        ? " align=\"right\""
                                       : "");
    }
    header = rows[0];
    alignments = found;
    rows.erase(rows.begin(), rows.begin() + 2);
  }

  std::string rowHtml(const Row& row, const std::string& name, const Output& output) const {
    std::string result = "<tr>";
    for (std::size_t i = 0; i < columnCount; ++i) {
      result.append("<").append(name).append(i < alignments.size() ? alignments[i] : "").append(">");
      if (i < row.size()) result += row[i].html(output);
      result.append("</").append(name).append(">");
    }
    return result + "</tr>";
  }

  std::string rowText(const Row& row) const {
    std::string result;
    for (std::size_t i = 0; i < columnCount; ++i) {
      if (i > 0) result += " | ";
      if (i < row.size()) result += row[i].plainText();
    }
    return result + " |";
  }
};

std::string trimmed(const std::string& text) {
  return trimmingLeadingWhitespaces(trimmingTrailingWhitespaces(text));
}

using Values = std::map<std::string, std::string>;

Values readMetadata(ReferenceReader& reader) {
  if (reader.readCount("-") != 3) throw ReadError{};
  reader.read("\n");
  Values values;
  std::optional<std::string> lastKey;
  while (!reader.didReachEnd()) {
    reader.discardWhitespacesAndNewlines();
    if (reader.didReachEnd()) throw ReadError{};
    if (reader.currentCharacter().is("-")) {
      if (reader.readCount("-") != 3) throw ReadError{};
      return values;
    }
    const std::string key = trimmed(reader.readUntil(":", {.required = false}));
    if (!reader.previousIs(":")) {
      if (lastKey && values.count(*lastKey) != 0) values[*lastKey] += " " + key;
      continue;
    }
    const std::string value = trimmed(reader.readUntilEndOfLine());
    if (!value.empty()) {
      values[key] = value;
      lastKey = key;
    }
  }
  throw ReadError{};
}

Values applyingModifiers(Values values, const ModifierCollection& modifiers) {
  modifiers.applyModifiers(Modifier::Target::metadataKeys, [&](const Modifier& modifier) {
    for (const auto& [key, value] : Values(values)) {
      values.erase(key);
      values[modifier.closure(key, key)] = value;
    }
  });
  modifiers.applyModifiers(Modifier::Target::metadataValues, [&](const Modifier& modifier) {
    for (auto& entry : values) entry.second = modifier.closure(entry.second, entry.second);
  });
  return values;
}

ElementPtr readBlock(ReferenceReader& reader, const BlockquoteFrame& frame) {
  const Character current = reader.currentCharacter();
  const auto next = reader.nextCharacter();
  const bool isDoubled = next && *next == current;
  return readOrRewind(reader, [&](ReferenceReader& r) -> ElementPtr {
    if (current.is("#")) return Heading::read(r);
    if (current.is("!")) return readImage(r);
    if (current.is("<")) return HtmlBlock::read(r);
    if (current.is(">")) return Blockquote::read(r, frame);
    if (current.is("`")) return CodeBlock::read(r);
    if (current.isAny("-*") && isDoubled) return HorizontalLine::read(r);
    if (current.isAny("-*+")) return List::read(r);
    if (current.isNumber()) return List::read(r);
    if (current.is("|")) return Table::read(r);
    return Paragraph::read(r);
  });
}

void readUrlDeclaration(ReferenceReader& reader, std::map<std::string, std::string>& urls) {
  reader.read("[");
  const std::string name = reader.readUntil("]", {});
  reader.read(":");
  reader.readWhitespaces();
  urls[lowercased(name)] = reader.readUntilEndOfLine();
}

}  // namespace

ReferenceMarkdown parse(std::string_view markdown, const BlockquoteFrame& frame,
                        const ModifierCollection& modifiers) {
  ReferenceMarkdown result;
  ReferenceReader reader(markdown);
  std::vector<std::pair<ElementPtr, std::string>> fragments;
  std::map<std::string, std::string> urls;
  std::shared_ptr<const Heading> titleHeading;
  bool hasMetadata = false;
  while (!reader.didReachEnd()) {
    reader.discardWhitespacesAndNewlines();
    if (reader.didReachEnd()) break;
    if (!hasMetadata && fragments.empty() && reader.currentCharacter().is("-")) {
      try {
        result.metadata = applyingModifiers(readOrRewind(reader, readMetadata), modifiers);
        hasMetadata = true;
        continue;
      } catch (const ReadError&) {
      }
    }
    const std::size_t start = reader.currentIndex;
    ElementPtr element;
    try {
      if (reader.currentCharacter().is("[")) {
        readOrRewind(reader, [&](ReferenceReader& r) { readUrlDeclaration(r, urls); });
        continue;
      }
      element = readBlock(reader, frame);
      auto heading = std::dynamic_pointer_cast<const Heading>(element);
      if (heading && heading->level == 1 && !titleHeading) titleHeading = heading;
    } catch (const ReadError&) {
      element = Paragraph::readFallback(reader);
    }
    fragments.emplace_back(element, reader.characters(start, reader.currentIndex));
  }
  const Output output{urls, modifiers};
  for (const auto& [element, raw] : fragments) result.html += element->modifiedHtml(output, raw);
  if (titleHeading) result.title = titleHeading->plainText();
  return result;
}

}  // namespace markdown::reference
