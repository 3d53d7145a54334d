#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/View.h"
#include "UserData/AdditionalViews.h"
#include "Values/EasterEggItem.h"

#include <memory>
#include <vector>

namespace velkin {

/// The list of addresses: chat's alone, or with the additional views all of them and the API key.
struct EasterEggEnabledUIView {
  bool isEditable = true;
  platform::Binding<int> currentPage = platform::Binding<int>::constant(0);
  platform::ObservedObject<AdditionalViews> isHemingwayEnabled{std::make_shared<AdditionalViews>()};
  std::vector<EasterEggItem> basicItems = {EasterEggItem::chatGPT};
  std::vector<EasterEggItem> enhancedItems = {allEasterEggItems.begin(), allEasterEggItems.end()};

  platform::View body() const;
};

}  // namespace velkin
