#include "UserData/VelkinSettingsJSON.h"

#include "UserData/VelkinSettingsFields.h"
#include "Values/PrettyJSON.h"

#include <limits>

#include <nlohmann/json.hpp>

namespace velkin {

namespace {

using nlohmann::json;

/// Each gives false for a value of another type.
bool read(const json& value, bool& field) {
  if (!value.is_boolean()) return false;
  field = value.get<bool>();
  return true;
}

bool read(const json& value, std::int64_t& field) {
  constexpr double limit = 9223372036854775808.0;
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
    return false;
  if (value.is_number_float()) {
    // A number that was written with a fraction of zero is an integer too.
    const auto number = value.get<double>();
    if (!(number >= -limit && number < limit)) return false;
    field = static_cast<std::int64_t>(number);
    return static_cast<double>(field) == number;
  }
  if (!value.is_number()) return false;
  field = value.get<std::int64_t>();
  return true;
}

bool read(const json& value, double& field) {
  if (!value.is_number()) return false;
  field = value.get<double>();
  return true;
}

bool read(const json& value, std::string& field) {
  if (!value.is_string()) return false;
  field = value.get<std::string>();
  return true;
}

constexpr std::string_view nameOfType(const bool&) { return "true or false"; }
constexpr std::string_view nameOfType(const std::int64_t&) { return "a whole number"; }
constexpr std::string_view nameOfType(const double&) { return "a number"; }
constexpr std::string_view nameOfType(const std::string&) { return "a text"; }

std::string_view documentKey(const VelkinSettingsField& field) {
  return settingRow(field.setting).documentKey;
}

}  // namespace

tl::expected<std::string, std::string> encode(const VelkinSettings& settings) {
  auto object = nlohmann::ordered_json::object();
  for (const auto& field : velkinSettingsFields) {
    std::visit(
        [&](auto member) {
          if (const auto& value = settings.*member) object[std::string(documentKey(field))] = *value;
        },
        field.member);
  }
  return prettyJSON(object);
}

tl::expected<VelkinSettings, std::string> decodeVelkinSettings(std::string_view text) {
  const auto document = json::parse(text, nullptr, false);
  if (document.is_discarded()) return tl::unexpected<std::string>("it is not JSON");
  if (!document.is_object()) return tl::unexpected<std::string>("it is JSON, but no object");
  VelkinSettings settings;
  for (const auto& field : velkinSettingsFields) {
    const auto found = document.find(documentKey(field));
    if (found == document.end() || found->is_null()) continue;
    std::string error;
    std::visit(
        [&](auto member) {
          auto& value = (settings.*member).emplace();
          if (read(*found, value)) return;
          error.append("\"").append(documentKey(field)).append("\" is not ").append(nameOfType(value));
        },
        field.member);
    if (!error.empty()) return tl::unexpected(error);
  }
  return settings;
}

std::vector<std::string_view> presentFields(const VelkinSettings& settings) {
  std::vector<std::string_view> names;
  for (const auto& field : velkinSettingsFields) {
    const bool isPresent =
        std::visit([&](auto member) { return (settings.*member).has_value(); }, field.member);
    if (isPresent) names.push_back(documentKey(field));
  }
  return names;
}

}  // namespace velkin
