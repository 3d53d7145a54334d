#include "Helpers/UserDefaultsHelper.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/UTF8.h"
#include "Values/SearchBarSearches.h"

#include <cmath>

namespace velkin {

using platform::PropertyListValue;

namespace {

constexpr std::int64_t threeHours = 10'800;

std::optional<int> digitIn(std::optional<char32_t> character) {
  if (!character || *character < U'0' || *character > U'9') return std::nullopt;
  return static_cast<int>(*character - U'0');
}

WebViewSwitchType viewOf(std::int64_t number) {
  return fromRawValue<WebViewSwitchType>(number).value_or(WebViewSwitchType::chatgpt);
}

template <class T>
T absent(UserDefault key) {
  return std::get<T>(settingRow(key).absent);
}

std::string textOf(const std::optional<WebViewSwitchType>& view) {
  return view ? std::to_string(rawValue(*view)) : "-";
}

}  // namespace

UserDefaultsHelper::UserDefaultsHelper()
    : UserDefaultsHelper(platform::NSUserDefaults::standardUserDefaults()) {}

UserDefaultsHelper::UserDefaultsHelper(platform::NSUserDefaults& defaults) : defaults_(&defaults) {}

bool UserDefaultsHelper::experimentalEnabled() const { return flag(UserDefault::experimentalEnabled); }
bool UserDefaultsHelper::showToolBar() const { return flag(UserDefault::showToolBar); }
bool UserDefaultsHelper::startAtLogin() const { return flag(UserDefault::startAtLogin); }
bool UserDefaultsHelper::hemingwayEnabled() const { return flag(UserDefault::hemingwayEnabled); }
bool UserDefaultsHelper::isAlternateViewVisible() const { return flag(UserDefault::isAlternateViewVisible); }
bool UserDefaultsHelper::isDarkMode() const { return flag(UserDefault::isDarkMode); }
bool UserDefaultsHelper::stickyMenu() const { return flag(UserDefault::stickyMenu); }
bool UserDefaultsHelper::onboardingCompleted() const { return flag(UserDefault::onboardingCompleted); }

std::string UserDefaultsHelper::onboardingChatURL() const {
  return getString(UserDefault::onboardingChatURL);
}

WebViewSwitchType UserDefaultsHelper::lastVisibleWebView() const {
  return viewOf(getInt(UserDefault::lastVisibleWebView));
}

UserDefault UserDefaultsHelper::lastVisibleUserDefault() const {
  return getUserDefault(lastVisibleWebView());
}

EasterEggItem UserDefaultsHelper::lastVisibleEasterEgg() const { return getEasterEgg(lastVisibleWebView()); }

std::int64_t UserDefaultsHelper::releaseNoteBuildVersion() const {
  return getInt(UserDefault::releaseNoteBuildVersion);
}

std::int64_t UserDefaultsHelper::lastTimeChatGPTVisible() const {
  return getInt(UserDefault::lastTimeChatGPTVisible);
}

std::vector<SearchBarSearch> UserDefaultsHelper::searchBarSearches() const { return getSearchBarSearches(); }

std::optional<SidebarGroup> UserDefaultsHelper::sideBarGroup1() const {
  return getSidebarGroup(UserDefault::sideBarGroup1);
}
std::optional<SidebarGroup> UserDefaultsHelper::sideBarGroup2() const {
  return getSidebarGroup(UserDefault::sideBarGroup2);
}
std::optional<SidebarGroup> UserDefaultsHelper::sideBarGroup3() const {
  return getSidebarGroup(UserDefault::sideBarGroup3);
}
std::optional<SidebarGroup> UserDefaultsHelper::sideBarGroup4() const {
  return getSidebarGroup(UserDefault::sideBarGroup4);
}

SidebarGroup UserDefaultsHelper::defaultSidebarGroup() {
  return {.isFullScreen = false, .mainView = WebViewSwitchType::chatgpt, .sideBar1 = WebViewSwitchType::jira};
}

double UserDefaultsHelper::webViewFSToggleHeight() const {
  return number(UserDefault::webViewFSToggleHeight);
}
double UserDefaultsHelper::webViewFSToggleWidth() const { return number(UserDefault::webViewFSToggleWidth); }
double UserDefaultsHelper::webViewHeight() const { return number(UserDefault::webViewHeight); }
double UserDefaultsHelper::webViewWidth() const { return number(UserDefault::webViewWidth); }
double UserDefaultsHelper::webViewZoom() const {
  return std::round(number(UserDefault::webViewZoom) * 100.0) / 100.0;
}

bool UserDefaultsHelper::flag(UserDefault key) const { return getBool(key, absent<bool>(key)); }

double UserDefaultsHelper::number(UserDefault key) const { return getCGFloat(key, absent<double>(key)); }

std::optional<SidebarGroup> UserDefaultsHelper::getSidebarGroup(UserDefault key) const {
  const auto text = getString(key);
  if (text.empty()) return std::nullopt;
  auto group = defaultSidebarGroup();
  std::string_view rest = text;
  for (int position = 0; !rest.empty() && position < 4; ++position) {
    const auto digit = digitIn(platform::takeCharacter(rest));
    if (!digit) continue;
    if (position == 0) group.mainView = viewOf(*digit);
    if (position == 1) group.sideBar1 = viewOf(*digit);
    if (position == 2) group.sideBar2 = viewOf(*digit);
    if (position == 3 && *digit <= 1) group.isFullScreen = *digit == 1;
  }
  return group;
}

std::vector<SearchBarSearch> UserDefaultsHelper::getSearchBarSearches() const {
  auto decoded = decodeSearchBarSearches(getString(UserDefault::searchBarSearches));
  if (!decoded) {
    platform::debugLog("Q$: Error decoding JSON data: " + decoded.error());
    return {};
  }
  platform::debugLog("UserDefaultsHelper.cpp", "getSearchBarSearches()", "SearchBarSearches converted");
  return std::move(decoded->searches);
}

std::optional<PropertyListValue> UserDefaultsHelper::getValue(UserDefault key) const {
  return defaults_->valueForKey(rawValue(key));
}

std::string UserDefaultsHelper::getString(UserDefault key, std::string_view defaultValue) const {
  return defaults_->stringForKey(rawValue(key)).value_or(std::string(defaultValue));
}

bool UserDefaultsHelper::getBool(UserDefault key, bool defaultValue) const {
  if (defaultValue) defaults_->registerDefaults({{std::string(rawValue(key)), true}});
  return defaults_->boolForKey(rawValue(key));
}

std::int64_t UserDefaultsHelper::getInt(UserDefault key) const {
  return defaults_->integerForKey(rawValue(key));
}

double UserDefaultsHelper::getCGFloat(UserDefault key, double defaultValue) const {
  const auto value = static_cast<double>(defaults_->floatForKey(rawValue(key)));
  return value == 0 ? defaultValue : value;
}

double UserDefaultsHelper::getDouble(UserDefault key, double defaultValue) const {
  return getCGFloat(key, defaultValue);
}

platform::NSUserDefaults::Together UserDefaultsHelper::together() const {
  return platform::NSUserDefaults::Together(*defaults_);
}

void UserDefaultsHelper::set(PropertyListValue value, UserDefault key) const {
  switch (key) {
    case UserDefault::webViewHeight:
      return setViewHeight(std::move(value));
    case UserDefault::webViewWidth:
      return setViewWidth(std::move(value));
    case UserDefault::webViewZoom:
      return setViewZoom(std::move(value));
    default:
      return defaults_->setObject(std::move(value), rawValue(key));
  }
}

void UserDefaultsHelper::setOptionally(std::optional<PropertyListValue> value, UserDefault key) const {
  if (value) defaults_->setObject(*std::move(value), rawValue(key));
}

void UserDefaultsHelper::setSidebarGroup(const SidebarGroup& group, UserDefault key) const {
  set(std::to_string(rawValue(group.mainView)) + textOf(group.sideBar1) + textOf(group.sideBar2) +
          (group.isFullScreen ? "1" : "0"),
      key);
}

void UserDefaultsHelper::setSearchBarSearches(const std::vector<SearchBarSearch>& searches) const {
  const auto json = encode(SearchBarSearches{searches});
  if (!json) platform::debugLog("Error encoding JSON: " + json.error());
  set(json.value_or(""), UserDefault::searchBarSearches);
}

bool UserDefaultsHelper::hasBeenThreeHoursSinceLGPTVisible() const {
  const auto wholeSecondsNow = static_cast<std::int64_t>(platform::now());
  // Not the difference: the stored number may be any at all, and the subtraction might overflow.
  return lastTimeChatGPTVisible() <= wholeSecondsNow - threeHours;
}

void UserDefaultsHelper::setViewHeight(PropertyListValue value) const {
  defaults_->setObject(std::move(value), rawValue(UserDefault::webViewHeight));
}

void UserDefaultsHelper::setViewWidth(PropertyListValue value) const {
  defaults_->setObject(std::move(value), rawValue(UserDefault::webViewWidth));
}

void UserDefaultsHelper::setViewZoom(PropertyListValue value) const {
  defaults_->setObject(std::move(value), rawValue(UserDefault::webViewZoom));
}

}  // namespace velkin
