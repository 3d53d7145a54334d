#include "unit/MarkdownEngine/Examples.h"

#include "unit/MarkdownEngine/Utf8.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace markdown::tests {
namespace {

void readFile(const std::filesystem::path& path, std::vector<Example>& examples) {
  std::ifstream file(path, std::ios::binary);
  std::string comment;
  std::string line;
  Example example;
  bool hasMarkdown = false;
  for (int number = 1; std::getline(file, line); ++number) {
    const std::string place = path.filename().string() + ":" + std::to_string(number);
    if (line.empty() || line[0] == '#') {
      if (hasMarkdown) throw std::runtime_error(place + ": the HTML is missing");
      if (!line.empty()) comment = line.substr(1);
      continue;
    }
    try {
      (hasMarkdown ? example.html : example.markdown) = unquoted(line);
    } catch (const std::exception& error) {
      throw std::runtime_error(place + ": " + error.what());
    }
    if (!hasMarkdown) example.name = place + comment;
    if (hasMarkdown) examples.push_back(example);
    hasMarkdown = !hasMarkdown;
  }
  if (hasMarkdown) throw std::runtime_error(path.filename().string() + ": the last HTML is missing");
}

}  // namespace

std::string unquoted(std::string_view line) {
  if (line.size() < 2 || line.front() != '"' || line.back() != '"')
    throw std::runtime_error("not in double quotes");
  line = line.substr(1, line.size() - 2);
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') throw std::runtime_error("a quote without a backslash");
    if (line[i] != '\\') {
      text.push_back(line[i]);
      continue;
    }
    if (++i == line.size()) throw std::runtime_error("a backslash at the end");
    switch (line[i]) {
      case 'n':
        text.push_back('\n');
        break;
      case 'r':
        text.push_back('\r');
        break;
      case 't':
        text.push_back('\t');
        break;
      case '\\':
      case '"':
        text.push_back(line[i]);
        break;
      case 'u': {
        const std::size_t end = line.find('}', i);
        if (line.substr(i + 1, 1) != "{" || end == std::string_view::npos)
          throw std::runtime_error("\\u without {}");
        text += utf8(
            static_cast<char32_t>(std::stoul(std::string(line.substr(i + 2, end - i - 2)), nullptr, 16)));
        i = end;
        break;
      }
      default:
        throw std::runtime_error("an unknown escape");
    }
  }
  return text;
}

std::vector<Example> readExamples() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(VELKIN_TEST_DATA "/MarkdownEngine/data")) {
    if (entry.path().extension() == ".txt") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Example> examples;
  for (const auto& path : paths) readFile(path, examples);
  return examples;
}

}  // namespace markdown::tests
