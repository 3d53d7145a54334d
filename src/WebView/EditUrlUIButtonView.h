#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "WebView/WebView.h"

#include <optional>
#include <string>

namespace velkin {

/// The toolbar's button whose bubble changes the address of the page on show.
struct EditUrlUIButtonView {
  std::optional<WebView> webButton;
  double iconSize = 12;
  platform::State<bool> shouldShowURLPopover{false};
  platform::State<std::string> initialText{};
  /// What was stored last.
  platform::State<std::string> urlText{};
  /// Where the page is at the moment.
  platform::State<std::string> updateUrlText{};
  platform::State<bool> isValidURL{false};

  platform::View body() const;

 private:
  void open() const;
  /// The name is an old slip of the finger.
  void resetUpdateUrlTet() const;
  void store(const std::string& text) const;
  platform::View settings() const;
};

}  // namespace velkin
