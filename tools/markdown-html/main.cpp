#include "Arguments.h"
#include "Components/MarkdownHtmlHelper.h"
#include "MarkdownEngine/ValidUtf8.h"

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace {

std::string readStandardInput() {
  constexpr std::size_t chunk = std::size_t{1} << 20;
  std::string input;
  std::size_t size = 0;
  while (true) {
    input.resize(size + chunk);
    const std::size_t count = std::fread(input.data() + size, 1, chunk, stdin);
    size += count;
    if (count == 0) break;
  }
  input.resize(size);
  return input;
}

void write(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void convert(std::string_view markdown, const Arguments& arguments, const markdown::MarkdownParser& parser) {
  const markdown::ValidUtf8 valid(markdown);
  if (!valid.wasValid()) {
    std::fputs("markdown-html: the input isn't valid UTF-8; U+FFFD stands for each bad sequence\n", stderr);
  }
  if (arguments.isJson) {
    const markdown::Markdown result = parser.parse(valid.text());
    nlohmann::json object = {{"html", result.html}, {"metadata", nlohmann::json::object()}};
    for (const auto& [key, value] : result.metadata) object["metadata"][key] = value;
    if (const auto title = result.title()) object["title"] = *title;
    write(object.dump(2));
    return;
  }
  const std::string html = parser.html(valid.text());
  write(arguments.isPage ? velkin::MarkdownHtmlHelper(arguments.isDark).makeHTMLString(html) : html);
}

int run(const Arguments& arguments) {
  const std::string input = readStandardInput();
  const markdown::MarkdownParser parser = velkin::MarkdownHtmlHelper::makeParser(arguments.isDark);
  std::string_view rest = input;
  if (arguments.isBatch) {
    for (std::size_t end = rest.find('\0'); end != std::string_view::npos; end = rest.find('\0')) {
      convert(rest.substr(0, end), arguments, parser);
      write(std::string_view("\0", 1));
      rest.remove_prefix(end + 1);
    }
  }
  convert(rest, arguments, parser);
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || std::ferror(stdin) != 0) {
    std::fputs("markdown-html: reading or writing failed\n", stderr);
    return 1;
  }
  return 0;
}

}  // namespace

int main(int count, char** values) {
  try {
    std::string problem;
    const auto arguments = Arguments::parse({values + 1, static_cast<std::size_t>(count - 1)}, problem);
    if (!arguments) {
      std::fprintf(stderr, "markdown-html: %s\n%s", problem.c_str(), usage);
      return 2;
    }
    if (arguments->isHelp) {
      write(usage);
      return 0;
    }
    return run(*arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "markdown-html: %s\n", error.what());
    return 1;
  }
}
