#include "MarkdownEngine/CodeBlock.h"

#include "MarkdownEngine/HtmlWriter.h"
#include "MarkdownEngine/PlainText.h"

#include <algorithm>

namespace markdown {
namespace {

constexpr char marker = '`';

}  // namespace

std::optional<CodeBlock> CodeBlock::read(Reader& reader, Content& /*content*/) {
  constexpr std::size_t minFence = 3;
  const std::size_t fence = reader.readCount(marker);
  if (fence < minFence) return std::nullopt;
  reader.discardWhitespaces();
  CodeBlock block;
  block.language = trimmingTrailingWhitespaces(reader.readUntilEndOfLine());

  const std::size_t start = reader.currentIndex();
  const std::string_view text = reader.string();
  std::size_t index = text.find(marker, start);
  while (index != std::string_view::npos) {
    // CR LF is another character than LF: a line that ends so is not followed by a fence.
    const bool isBehindLineFeed =
        index > start && text[index - 1] == '\n' && (index - 1 == start || text[index - 2] != '\r');
    reader.moveToIndex(index);
    if (isBehindLineFeed && reader.readCount(marker) == fence) {
      block.code = reader.characters(start, index);
      return block;
    }
    index = text.find(marker, std::max(index + 1, reader.currentIndex()));
  }
  reader.moveToIndex(reader.endIndex());
  block.code = reader.characters(start, reader.endIndex());
  return block;
}

void CodeBlock::writeHtml(HtmlWriter& writer) const {
  writer.write("<pre>\n");
  writer.writeEscaped(code);
  writer.write("\n<button class=\"copy-button\" onclick=\"copyCode(this)\">Copy</button>\n</pre>");
}

void CodeBlock::writePlainText(const Content& /*content*/, std::string& text) const {
  writeEscaped(code, text);
}

}  // namespace markdown
