#include "extenstions/FileDescription.h"

#include <array>
#include <ctime>

namespace velkin {

std::string fileDescription(double secondsSince1970) {
  const auto time = static_cast<std::time_t>(secondsSince1970);
  std::tm local{};
  localtime_r(&time, &local);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%m-%d-%y_%H%M", &local)};
}

}  // namespace velkin
