#pragma once

#include "Appearance/ZoomSamples.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"
#include "UserData/SharedState.h"
#include "Values/AppearanceUIViewDelegate.h"

#include <functional>
#include <memory>

namespace velkin {

/// The panel in which the user chooses the window's size, the pages' zoom and what stands beside the main
/// view. Each choice is stored and takes effect at once.
struct AppearanceUIView {
  AppearanceUIViewDelegate* delegate = nullptr;
  UserDefaultsHelper defaults = {};
  /// The page that has the main place at the moment.
  std::function<platform::WKWebView&()> webView;
  platform::State<bool> isPressed{false};
  platform::ObservedObject<SharedState> sharedState;
  /// The groups' editor and the toolbar's check box, which another feature makes.
  platform::View sideBar = platform::EmptyView();
  std::shared_ptr<ZoomSamples> samples = std::make_shared<ZoomSamples>();

  platform::View body() const;
};

}  // namespace velkin
