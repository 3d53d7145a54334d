#pragma once

#include "Platform/NSUserDefaults.h"
#include "Values/EasterEggItem.h"
#include "Values/SearchBarSearch.h"
#include "Values/SidebarGroup.h"
#include "Values/UserDefault.h"
#include "Values/WebViewSwitchType.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkin {

/// Typed access to the settings domain. Stateless: everyone makes one of their own, and all see the same
/// settings. No operation reports an error: what is missing or unreadable reads as its default. Any thread.
class UserDefaultsHelper {
 public:
  /// Over the standard domain, as it is when the object is made.
  UserDefaultsHelper();
  explicit UserDefaultsHelper(platform::NSUserDefaults& defaults);

  bool experimentalEnabled() const;
  /// True unless switched off; every other flag is false unless switched on.
  bool showToolBar() const;
  bool startAtLogin() const;
  bool hemingwayEnabled() const;
  bool isAlternateViewVisible() const;
  bool isDarkMode() const;
  bool stickyMenu() const;
  bool onboardingCompleted() const;
  std::string onboardingChatURL() const;
  /// `chatgpt` for an unknown number.
  WebViewSwitchType lastVisibleWebView() const;
  /// The setting that holds the last visible view's address.
  UserDefault lastVisibleUserDefault() const;
  EasterEggItem lastVisibleEasterEgg() const;
  std::int64_t releaseNoteBuildVersion() const;
  /// Whole seconds since 1970.
  std::int64_t lastTimeChatGPTVisible() const;
  std::vector<SearchBarSearch> searchBarSearches() const;
  std::optional<SidebarGroup> sideBarGroup1() const;
  std::optional<SidebarGroup> sideBarGroup2() const;
  std::optional<SidebarGroup> sideBarGroup3() const;
  std::optional<SidebarGroup> sideBarGroup4() const;
  static SidebarGroup defaultSidebarGroup();
  double webViewFSToggleHeight() const;
  double webViewFSToggleWidth() const;
  double webViewHeight() const;
  double webViewWidth() const;
  /// Rounded to two decimals, which undoes the single precision of the read: a stored 1.2 is exactly 1.2.
  double webViewZoom() const;

  /// Nothing if the stored text is empty or absent. A character that doesn't fit leaves its field as the
  /// default group has it; so a "-" for the first sidebar leaves `jira` there.
  std::optional<SidebarGroup> getSidebarGroup(UserDefault key) const;
  /// Empty if the stored text can't be decoded; the text stays stored.
  std::vector<SearchBarSearch> getSearchBarSearches() const;
  std::optional<platform::PropertyListValue> getValue(UserDefault key) const;
  std::string getString(UserDefault key, std::string_view defaultValue = {}) const;
  /// A default of true is registered with the domain at each read.
  bool getBool(UserDefault key, bool defaultValue = false) const;
  std::int64_t getInt(UserDefault key) const;
  /// Read in single precision. A stored zero can't be told from an absent key: both give the default.
  double getCGFloat(UserDefault key, double defaultValue) const;
  double getDouble(UserDefault key, double defaultValue) const;

  /// What is set while the result lives is stored in one go.
  [[nodiscard]] platform::NSUserDefaults::Together together() const;
  void set(platform::PropertyListValue value, UserDefault key) const;
  /// An absent value leaves the stored one as it is.
  void setOptionally(std::optional<platform::PropertyListValue> value, UserDefault key) const;
  /// Stored as four characters: main view, first and second sidebar (their numbers, or "-"), "1" for full
  /// screen or "0". A view whose number has two digits can't stand in a group.
  void setSidebarGroup(const SidebarGroup& group, UserDefault key) const;
  /// Stored as JSON; a history that can't be encoded is stored as the empty text, which clears it.
  void setSearchBarSearches(const std::vector<SearchBarSearch>& searches) const;

  /// The name is an old slip of the finger.
  bool hasBeenThreeHoursSinceLGPTVisible() const;

 private:
  /// With the table's value where nothing is stored.
  bool flag(UserDefault key) const;
  double number(UserDefault key) const;
  void setViewHeight(platform::PropertyListValue value) const;
  void setViewWidth(platform::PropertyListValue value) const;
  void setViewZoom(platform::PropertyListValue value) const;

  platform::NSUserDefaults* defaults_;
};

}  // namespace velkin
