#include "Families.h"

const std::vector<Family>& families() {
  static const std::vector<Family> all = {
      {"[", "["},
      {"![", "!["},
      {"![[", "![["},
      {"*", "*"},
      {"_", "_"},
      {"**a ", "**a "},
      {"*a **b ", "*a **b "},
      {"~~", "~~"},
      {"`", "`"},
      {"``` ", "``` "},
      {"<a ", "<a "},
      {"<", "<"},
      {"&", "&"},
      {"&a", "&a"},
      {"\\", "\\"},
      {"> ", "> "},
      {"- ", "- "},
      {"1. ", "1. "},
      {"|", "|"},
      {"| a ", "| a "},
      {"| a |\\n", "| a |\n"},
      {"[a](", "[a]("},
      {"[a][", "[a]["},
      {"[a]: ", "[a]: "},
      {"#", "#"},
      {"---\\n", "---\n"},
      {"blanks", " "},
      {"tabs", "\t"},
      {"newlines", "\n"},
      {"CR LF", "\r\n"},
      {"a\\n", "a\n"},
      {"combining marks", "\u0301"},
      {"flags", "\U0001F1E6\U0001F1E8"},
      {"ZWJ emoji", "\U0001F468\u200D\U0001F469\u200D\U0001F467"},
      {"<p", "<p"},
      {"<b>", "<b>"},
      {"</b", "</b"},
      {">", ">"},
      {"]", "]"},
      {"](", "]("},
      {"](u)", "](u)"},
      {"  \\n", "  \n"},
      {"- a\\n", "- a\n"},
      {"\\n- ", "\n- "},
      {"a `b", "a `b"},
      {"[a](b)", "[a](b)"},
      {"(", "("},
      {";", ";"},
  };
  return all;
}

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) text += piece;
  return text;
}

std::string deeperAndDeeperLists(std::size_t size) {
  std::string text;
  for (std::size_t depth = 0; text.size() < size; ++depth) text.append(depth, ' ').append("- a\n");
  return text;
}

std::string deeperAndShallowerLists(std::size_t size) {
  std::string text;
  std::size_t depth = 0;
  for (; text.size() < size / 2; ++depth) text.append(depth, ' ').append("- a\n");
  while (depth-- > 0) text.append(depth, ' ').append("- b\n");
  return text;
}
