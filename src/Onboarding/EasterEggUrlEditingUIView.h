#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/AdditionalViews.h"
#include "Values/PageDelegates.h"

#include <memory>

namespace velkin {

/// The page on which all addresses and the global shortcuts are changed.
struct EasterEggUrlEditingUIView {
  EasterEggUrlEditingUIViewDelegate* delegate = nullptr;
  double pageControlAreaHeight = 56;
  platform::ObservedObject<AdditionalViews> isHemingwayEnabled{std::make_shared<AdditionalViews>()};
  platform::State<int> currentPage{0};

  platform::View body() const;
};

}  // namespace velkin
