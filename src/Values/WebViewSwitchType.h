#pragma once

#include "Values/EasterEggItem.h"
#include "Values/UserDefault.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

namespace velkin {

/// The catalogue of views. The numbers are stored (as the last view, and in sidebar groups) and never change.
/// `markdown` is the scratchpad; what is no web view either is a page or a panel, which falls back on the
/// chat view's name, address and setting.
enum class WebViewSwitchType : int {
  chatgpt = 0,
  bard = 1,
  bitbucket = 2,
  gitlab = 3,
  hemingway = 4,
  jira = 5,
  markdown = 6,
  onboarding = 7,
  releaseNotes = 8,
  editUrls = 9,
  search = 10,
};

inline constexpr std::array allWebViewSwitchTypes = {
    WebViewSwitchType::chatgpt,  WebViewSwitchType::bard,       WebViewSwitchType::bitbucket,
    WebViewSwitchType::gitlab,   WebViewSwitchType::hemingway,  WebViewSwitchType::jira,
    WebViewSwitchType::markdown, WebViewSwitchType::onboarding, WebViewSwitchType::releaseNotes,
    WebViewSwitchType::editUrls, WebViewSwitchType::search};

/// Those that show an outside service's page: they alone have an address of their own.
inline constexpr std::array webViews = {WebViewSwitchType::chatgpt,   WebViewSwitchType::bard,
                                        WebViewSwitchType::bitbucket, WebViewSwitchType::gitlab,
                                        WebViewSwitchType::hemingway, WebViewSwitchType::jira};
inline constexpr std::size_t webViewCount = webViews.size();

constexpr int rawValue(WebViewSwitchType type) noexcept { return static_cast<int>(type); }

/// `fromRawValue<WebViewSwitchType>(number)`: nothing outside the catalogue.
template <std::same_as<WebViewSwitchType> Type>
constexpr std::optional<Type> fromRawValue(std::int64_t number) noexcept {
  if (number < 0 || number >= std::ssize(allWebViewSwitchTypes)) return std::nullopt;
  return static_cast<WebViewSwitchType>(number);
}

/// The view by its name in this catalogue, as others ask for it.
std::optional<WebViewSwitchType> fromCaseName(std::string_view name) noexcept;

/// The view's position among `webViews`; nothing of any other view.
constexpr std::optional<std::size_t> webViewIndex(WebViewSwitchType type) noexcept {
  const auto found = std::ranges::find(webViews, type);
  if (found == webViews.end()) return std::nullopt;
  return static_cast<std::size_t>(found - webViews.begin());
}

constexpr bool isWebView(WebViewSwitchType type) noexcept { return webViewIndex(type).has_value(); }

std::string_view viewName(WebViewSwitchType type) noexcept;
/// The built-in address; for `onboarding` the text that its empty address field shows.
std::string_view defaultUrlString(WebViewSwitchType type) noexcept;
/// The setting that overrides the address.
UserDefault getUserDefault(WebViewSwitchType type) noexcept;
/// The entry in the list of editable addresses.
EasterEggItem getEasterEgg(WebViewSwitchType type) noexcept;
/// The view whose address the entry is.
WebViewSwitchType viewOf(EasterEggItem item) noexcept;

/// The setting that `setUrl` writes: of the six web views the address, of `search` the API key; nothing of
/// every other view.
std::optional<UserDefault> writtenUserDefault(WebViewSwitchType type) noexcept;

}  // namespace velkin
