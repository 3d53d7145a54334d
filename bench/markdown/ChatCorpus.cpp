#include "ChatCorpus.h"

#include <random>
#include <string_view>

namespace {

constexpr std::string_view words[] = {
    "the",    "of",      "and",        "to",       "in",        "is",        "that",   "it",      "for",
    "with",   "value",   "list",       "function", "returns",   "when",      "each",   "element", "you",
    "can",    "use",     "this",       "example",  "code",      "following", "result", "because", "however",
    "first",  "second",  "then",       "data",     "type",      "string",    "number", "index",   "loop",
    "memory", "time",    "complexity", "sorted",   "should",    "would",     "which",  "between", "other",
    "method", "class",   "object",     "variable", "parameter", "file",      "line",   "error",   "message",
    "server", "request", "response",   "client",   "network",   "update",    "a",      "be",      "as",
    "are",    "or",      "an",         "not",      "if",        "by",        "on"};
constexpr std::string_view foreignWords[] = {"naïve",  "café",   "größer",   "señor",     "übermäßig",
                                             "привет", "данные", "“quoted”", "dash—here", "日本語",
                                             "文字列", "👍",      "✅",        "it’s",      "don’t"};
constexpr std::string_view codeLines[] = {"def solve(values, target):\n",
                                          "    for index, value in enumerate(values):\n",
                                          "        if value < target and index > 0:\n",
                                          "            result.append((index, value))\n",
                                          "    return sorted(result, key=lambda pair: pair[1])\n",
                                          "\n",
                                          "std::vector<int> values{1, 2, 3};  // the numbers\n",
                                          "if (left && !right) return *left;\n",
                                          "print(f\"{name}: {value:>10}\")\n"};

class Writer {
 public:
  explicit Writer(std::size_t size) : size_(size) { text_.reserve(size + 4096); }

  std::string write() {
    while (text_.size() < size_) writeBlock();
    text_.resize(size_);
    // The cut may have gone through a scalar.
    while (!text_.empty() && (static_cast<unsigned char>(text_.back()) & 0x80) != 0)
      text_.back() = ' ', text_.pop_back();
    return std::move(text_);
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  std::size_t between(std::size_t least, std::size_t most) { return least + below(most - least + 1); }
  template <std::size_t count>
  std::string_view oneOf(const std::string_view (&choices)[count]) {
    return choices[below(count)];
  }

  void writeWord() {
    const std::string_view word = oneOf(words);
    const std::size_t kind = below(100);
    if (kind < 3) {
      text_.append("**").append(word).append("**");
    } else if (kind < 5) {
      text_.append("*").append(word).append("*");
    } else if (kind < 9) {
      text_.append("`").append(word).append("()`");
    } else if (kind < 10) {
      text_.append("[").append(word).append("](https://example.com/").append(word).append("/page.html)");
    } else if (kind < 13) {
      text_.append(oneOf(foreignWords));
    } else {
      text_.append(word);
    }
  }

  void writeSentence(std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
      if (i > 0) text_.append(below(12) == 0 ? ", " : " ");
      writeWord();
    }
    text_.append(below(10) == 0 ? ":" : ".");
  }

  void writeParagraph() {
    const std::size_t sentences = between(2, 5);
    for (std::size_t i = 0; i < sentences; ++i) {
      if (i > 0) text_.append(below(6) == 0 ? "\n" : " ");
      writeSentence(between(6, 18));
    }
    text_.append("\n\n");
  }

  void writeList() {
    const bool isOrdered = below(2) == 0;
    const std::size_t items = between(3, 7);
    for (std::size_t i = 1; i <= items; ++i) {
      text_.append(isOrdered ? std::to_string(i) + ". " : "- ");
      writeSentence(between(4, 14));
      text_.append("\n");
      for (std::size_t nested = below(3); nested > 0; --nested) {
        text_.append("   - ");
        writeSentence(between(3, 9));
        text_.append("\n");
      }
    }
    text_.append("\n");
  }

  void writeCode() {
    text_.append(below(2) == 0 ? "```python\n" : "```cpp\n");
    for (std::size_t lines = between(4, 16); lines > 0; --lines) text_.append(oneOf(codeLines));
    text_.append("```\n\n");
  }

  void writeTable() {
    text_.append("| Name | Value | Notes |\n|------|:-----:|------:|\n");
    for (std::size_t rows = between(3, 8); rows > 0; --rows) {
      text_.append("| ")
          .append(oneOf(words))
          .append(" | `")
          .append(std::to_string(below(1000)))
          .append("` | ");
      writeSentence(between(2, 6));
      text_.append(" |\n");
    }
    text_.append("\n");
  }

  void writeBlock() {
    const std::size_t kind = below(20);
    if (kind < 9) return writeParagraph();
    if (kind < 11) {
      text_.append("## ");
      writeSentence(between(2, 6));
      text_.append("\n\n");
      return;
    }
    if (kind < 15) return writeList();
    if (kind < 18) return writeCode();
    if (kind < 19) return writeTable();
    text_.append("> ");
    writeSentence(between(6, 14));
    text_.append("\n> ");
    writeSentence(between(6, 14));
    text_.append("\n\n");
  }

  std::size_t size_;
  std::string text_;
  std::mt19937 random_{42};
};

}  // namespace

std::string makeChatCorpus(std::size_t size) { return Writer(size).write(); }
