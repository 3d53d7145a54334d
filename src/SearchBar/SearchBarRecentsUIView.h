#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/SearchBarSearch.h"

#include <functional>
#include <string>
#include <vector>

namespace velkin {

/// The button with the menu of recent searches.
struct SearchBarRecentsUIView {
  UserDefaultsHelper defaults;
  platform::State<bool> shouldShowPopover{false};
  platform::Binding<std::vector<SearchBarSearch>> searches;
  std::function<void(const SearchBarSearch&)> action;
  platform::Action clearAction;

  platform::View body() const;
  /// The prompts, the oldest at the top.
  std::vector<std::string> searchesText() const;

 private:
  platform::View menu() const;
  void rowClicked(const std::string& text) const;
};

}  // namespace velkin
