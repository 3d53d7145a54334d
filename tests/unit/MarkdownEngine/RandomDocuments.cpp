#include "unit/MarkdownEngine/RandomDocuments.h"

#include <string_view>
#include <vector>

namespace markdown::tests {
namespace {

using Pieces = std::vector<std::string_view>;

const Pieces text = {"a", "b", "word", "p", "P", "1", "23", " ", " ", "\n"};
const Pieces emphasis = {"*", "**", "_", "__", "~~", "~", "***", "*_", "\\"};
const Pieces links = {"[", "]",  "[",        "](u)",       "][r]",   "![",     "](", ")",
                      "(", "][", "[r]: v\n", "\n[R]: w\n", "[x][r]", "[x](y)", "!",  ":"};
const Pieces html = {"<", ">", "<b>", "</b>", "<p", "<a ", "<br/>", "<!-- ", "/", "</", "<b ", "< "};
const Pieces escapes = {"&", ";", "&amp;", "\\", "<", ">", "`", "``", "```", "`c`", "\\\\", "\\`", "\\["};
const Pieces lines = {"\n", "\n\n", "  \n", " \n",   "\\\n", "\r\n", "\r",
                      "\t", "    ", "  ",   "\n \n", "\f",   "\v"};
const Pieces blocks = {"# ",    "\n# ", "## ",   "#",       "> ",     "\n> ",  "\n>", "\n---\n",
                       "---\n", "***",  "```\n", "\n```\n", "````\n", "\n```", "-",   "--"};
const Pieces lists = {"- ",   "\n- ",   "\n  - ", "\n    - ",    "* ",           "\n* ",
                      "+ ",   "1. ",    "\n1. ",  "\n  2. ",     "\n3) ",        "\n   x",
                      "\n  ", "\n 1. ", "0) ",    "123456789. ", "1234567890. ", "\n\t- "};
const Pieces tables = {"|",       "| a ",  " |\n", "\n|", "|---|:-:|\n", "| a | b |\n",
                       "| x |\n", "|\r\n", ":-",   "-:",  "\\|",         "|:--|\n"};
const Pieces unicode = {
    "\u00e9",       "e\u0301",       "*\u0301", " \u0301", "\u00a0",     "\u2028",
    "\u2003",       "\u3000",        "\u0600",  "\u0600*", "\u200d",     "\u2019",
    "\u0085",       "\u4e00",        "\u0661",  "\u00bd",  "\U0001F1E6", "\U0001F468\u200d\U0001F469",
    "\uac00\u11a8", "#\ufe0f\u20e3", "<\u0338", ">\u0338", "[\u0301",    "`\u0301",
    "|\u0301",      "\\\u0301",      "\u0903",  "\u0e33",  "\ufeff",     "\u00ad",
    "-\u0301",      "1\u0301",       "&\u0301", ";\u0301", "\u0130",     "\u03a3",
    "(\u0301",      ")\u0301",       "]\u0301"};
const Pieces metadata = {"---\n", "title: T\n", "key:\n", ":v\n", "goes on\n", "---", "\n---\n", "----\n"};
const Pieces* const families[] = {&text,  &text,   &emphasis, &links, &links,  &html,    &escapes, &lines,
                                  &lines, &blocks, &lists,    &lists, &tables, &unicode, &metadata};

}  // namespace

std::string RandomDocuments::next(std::size_t maxPieces) {
  // Two or three families meet more often in one document than all of them do.
  std::vector<const Pieces*> chosen;
  const std::size_t familyCount = below(4) == 0 ? std::size(families) : 1 + below(4);
  for (std::size_t i = 0; i < familyCount; ++i) chosen.push_back(families[below(std::size(families))]);
  chosen.push_back(&text);
  std::string document;
  if (below(8) == 0) document = "---\n";
  const std::size_t count = below(maxPieces) + 1;
  for (std::size_t i = 0; i < count; ++i) {
    const Pieces& pieces = *chosen[below(chosen.size())];
    document += pieces[below(pieces.size())];
  }
  return document;
}

}  // namespace markdown::tests
