#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/URL.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// What can be done with an answer, and with the key.
struct SearchButtonRowUIView {
  /// Where the provider's account makes keys.
  platform::URL keyUrl = defaultKeyUrl();
  platform::State<bool> isDisabled{false};
  platform::Binding<bool> isMissingApiKey;
  platform::Binding<bool> isTextEmpty;
  platform::Binding<bool> showResetKeyView;
  platform::Binding<std::string> resultString;
  platform::Binding<std::string> text;
  /// Told whether there is a key now.
  std::function<void(bool)> didSetApiKey;

  platform::View body() const;

  static platform::URL defaultKeyUrl();

 private:
  void getKeyClicked() const;
  void saveKeyClicked() const;
  void resetKeyClicked() const;
  void copyClicked() const;
  void setKey(const std::string& key) const;
};

}  // namespace velkin
