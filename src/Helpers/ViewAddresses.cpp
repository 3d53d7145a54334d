#include "Helpers/ViewAddresses.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/FatalError.h"

namespace velkin {

platform::URL getUrl(WebViewSwitchType type) {
  const auto defaultAddress = defaultUrlString(type);
  auto address = isWebView(type) ? UserDefaultsHelper().getString(getUserDefault(type), defaultAddress)
                                 : std::string(defaultAddress);
  if (address.empty()) address = defaultAddress;
  return platform::unwrap(platform::URL::parse(address));
}

void setUrl(WebViewSwitchType type, std::string_view url) {
  if (const auto key = writtenUserDefault(type)) UserDefaultsHelper().set(url, *key);
}

std::string url(EasterEggItem item) {
  const auto address = getUrl(viewOf(item)).absoluteString();
  return item == EasterEggItem::search ? UserDefaultsHelper().getString(UserDefault::searchKey, address)
                                       : address;
}

void setUrl(EasterEggItem item, std::string_view text) { setUrl(viewOf(item), text); }

}  // namespace velkin
