#include "UserData/VelkinSettingsJSON.h"

#include "UserData/VelkinSettingsFields.h"
#include "Values/PrettyJSON.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

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

/// Takes the fields out of a document as they come by. Nothing else of it is kept: a file of brackets only
/// would take a hundred times its size.
class DocumentReader : public nlohmann::json_sax<json> {
 public:
  VelkinSettings settings;
  /// The first reason why it is no settings document, if it is JSON.
  std::string error;

  bool null() override { return isField_ ? forget() : noteIfAlone(); }
  bool boolean(bool value) override { return take(value); }
  bool number_integer(std::int64_t value) override { return take(value); }
  bool number_unsigned(std::uint64_t value) override { return take(value); }
  bool number_float(double value, const std::string&) override { return take(value); }
  bool string(std::string& value) override { return take(value); }
  bool binary(json::binary_t&) override { return false; }
  bool start_object(std::size_t) override {
    if (depth_ > 0) take(json::value_t::object);
    ++depth_;
    return true;
  }
  bool start_array(std::size_t) override {
    take(json::value_t::array);
    ++depth_;
    return true;
  }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }
  bool key(std::string& name) override {
    if (depth_ != 1) return true;
    field_ = std::ranges::find(velkinSettingsFields, name, documentKey);
    isField_ = field_ != velkinSettingsFields.end();
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }

 private:
  bool end() {
    --depth_;
    return true;
  }
  /// A document may be a value alone. It is read to its end all the same: it may not be JSON.
  bool noteIfAlone() {
    if (depth_ == 0) error = "it is JSON, but no object";
    return true;
  }
  /// The last one of several with the same name counts.
  bool forget() {
    isField_ = false;
    std::visit([&](auto member) { (settings.*member).reset(); }, field_->member);
    return true;
  }
  template <class Value>
  bool take(const Value& found) {
    if (!std::exchange(isField_, false)) return noteIfAlone();
    std::visit(
        [&](auto member) {
          auto& value = (settings.*member).emplace();
          if (read(json(found), value) || !error.empty()) return;
          error.append("\"").append(documentKey(*field_)).append("\" is not ").append(nameOfType(value));
        },
        field_->member);
    return true;
  }

  std::size_t depth_ = 0;
  /// The next value is this field's.
  bool isField_ = false;
  decltype(velkinSettingsFields)::const_iterator field_ = velkinSettingsFields.end();
};

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
  DocumentReader reader;
  const bool isRead = json::sax_parse(text, &reader);
  if (!isRead) return tl::unexpected<std::string>("it is not JSON");
  if (!reader.error.empty()) return tl::unexpected(std::move(reader.error));
  return std::move(reader.settings);
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
