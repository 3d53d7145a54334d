#include "Values/PrettyJSON.h"

#include "Platform/UTF8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include <nlohmann/json.hpp>

namespace velkin {

namespace {

using nlohmann::ordered_json;

struct Escape {
  char32_t character;
  std::string_view text;
};

constexpr auto escapes = std::to_array<Escape>({{'"', "\\\""},
                                                {'\\', "\\\\"},
                                                {'/', "\\/"},
                                                {'\b', "\\b"},
                                                {'\f', "\\f"},
                                                {'\n', "\\n"},
                                                {'\r', "\\r"},
                                                {'\t', "\\t"}});

class Printer {
 public:
  /// False if the value can't be written.
  bool print(const ordered_json& value) {
    switch (value.type()) {
      case ordered_json::value_t::object:
        return printContainer(value, '{', '}');
      case ordered_json::value_t::array:
        return printContainer(value, '[', ']');
      case ordered_json::value_t::string:
        printText(value.get_ref<const std::string&>());
        return true;
      case ordered_json::value_t::number_float:
        return printReal(value.get<double>());
      default:
        text_ += value.dump();
        return true;
    }
  }

  std::string take() { return std::move(text_); }

 private:
  void newLine() {
    text_ += '\n';
    text_.append(2 * depth_, ' ');
  }

  bool printContainer(const ordered_json& container, char opening, char closing) {
    text_ += opening;
    ++depth_;
    bool isFirst = true;
    for (const auto& [key, item] : container.items()) {
      if (!isFirst) text_ += ',';
      isFirst = false;
      newLine();
      if (container.is_object()) {
        printText(key);
        text_ += " : ";
      }
      if (!print(item)) return false;
    }
    --depth_;
    if (isFirst) text_ += '\n';
    newLine();
    text_ += closing;
    return true;
  }

  void printText(std::string_view text) {
    constexpr std::string_view hexDigits = "0123456789abcdef";
    text_ += '"';
    while (!text.empty()) {
      const auto character = platform::takeCharacter(text).value_or(platform::replacementCharacter);
      const auto* escape = std::find_if(escapes.begin(), escapes.end(),
                                        [&](const Escape& entry) { return entry.character == character; });
      if (escape != escapes.end()) {
        text_ += escape->text;
      } else if (character < 0x20) {
        text_ += "\\u00";
        text_ += hexDigits[character >> 4U];
        text_ += hexDigits[character & 0xFU];
      } else {
        platform::appendUTF8(text_, character);
      }
    }
    text_ += '"';
  }

  bool printReal(double real) {
    if (!std::isfinite(real)) return false;
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), real).ptr;
    text_.append(digits.data(), end);
    return true;
  }

  std::string text_;
  std::size_t depth_ = 0;
};

}  // namespace

tl::expected<std::string, std::string> prettyJSON(const ordered_json& value) {
  Printer printer;
  if (!printer.print(value))
    return tl::unexpected<std::string>("a number that is not finite has no form in JSON");
  return printer.take();
}

}  // namespace velkin
