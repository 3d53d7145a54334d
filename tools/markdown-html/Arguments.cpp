#include "Arguments.h"

#include <string_view>

std::optional<Arguments> Arguments::parse(std::span<const char* const> arguments, std::string& problem) {
  struct Flag {
    std::string_view name;
    bool Arguments::*value;
  };
  constexpr Flag flags[] = {{"--dark", &Arguments::isDark},
                            {"--json", &Arguments::isJson},
                            {"--page", &Arguments::isPage},
                            {"--batch", &Arguments::isBatch},
                            {"--help", &Arguments::isHelp}};
  Arguments parsed;
  for (const std::string_view argument : arguments) {
    bool isKnown = false;
    for (const Flag& flag : flags) {
      if (argument != flag.name) continue;
      parsed.*flag.value = true;
      isKnown = true;
    }
    if (!isKnown) {
      problem = "unknown argument: " + std::string(argument);
      return std::nullopt;
    }
  }
  if (parsed.isJson && parsed.isPage) {
    problem = "--json and --page can't both be given";
    return std::nullopt;
  }
  return parsed;
}
