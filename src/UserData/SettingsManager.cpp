#include "UserData/SettingsManager.h"

#include "UserData/VelkinSettingsFields.h"

namespace velkin {

namespace {

constexpr bool isGroup(UserDefault setting) {
  return setting >= UserDefault::sideBarGroup1 && setting <= UserDefault::sideBarGroup4;
}

void read(const UserDefaultsHelper& defaults, UserDefault setting, std::optional<bool>& field) {
  field = defaults.getBool(setting);
}

void read(const UserDefaultsHelper& defaults, UserDefault setting, std::optional<std::int64_t>& field) {
  field = defaults.getInt(setting);
}

void read(const UserDefaultsHelper& defaults, UserDefault setting, std::optional<double>& field) {
  field = defaults.getCGFloat(setting, std::get<double>(settingRow(setting).absent));
}

void read(const UserDefaultsHelper& defaults, UserDefault setting, std::optional<std::string>& field) {
  field = defaults.getString(setting);
  if (isGroup(setting) && field->empty()) field.reset();
}

}  // namespace

VelkinSettings SettingsManager::getUserDefaultSettings() const {
  VelkinSettings settings;
  for (const auto& field : velkinSettingsFields) {
    std::visit([&](auto member) { read(defaults, field.setting, settings.*member); }, field.member);
  }
  return settings;
}

void SettingsManager::setUserDefaultSettings(const VelkinSettings& settings) const {
  const auto together = defaults.together();
  for (const auto& field : velkinSettingsFields) {
    std::visit(
        [&](auto member) {
          std::optional<platform::PropertyListValue> value;
          if (settings.*member) value.emplace(*(settings.*member));
          defaults.setOptionally(std::move(value), field.setting);
        },
        field.member);
  }
}

}  // namespace velkin
