#pragma once

#include "Appearance/ZoomSamples.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"
#include "UserData/WindowAppearance.h"
#include "Values/AppearanceFontSize.h"

#include <functional>
#include <memory>

namespace velkin {

/// The choice of the pages' zoom, with a sample of each step. A choice is stored, and the page in the main
/// place follows. It follows a zoom that is changed elsewhere.
struct ZoomPickerUIView {
  UserDefaultsHelper defaults = {};
  std::function<platform::WKWebView&()> webView;
  platform::State<AppearanceFontSize> selectedFontSize{
      fromRawValue<AppearanceFontSize>(defaults.webViewZoom())};
  /// Points.
  double fontZoomIconSize = 64;
  std::shared_ptr<ZoomSamples> samples;
  platform::ObservedObject<WindowAppearance> changes{std::make_shared<WindowAppearance>()};

  platform::View body() const;
  void select(AppearanceFontSize size) const;
};

/// A sample of one step, which chooses it.
struct ZoomTextSelectionUIView {
  AppearanceFontSize fontSize = AppearanceFontSize::normal;
  bool isSelected = false;
  double iconSize = 64;
  std::shared_ptr<ZoomSamples> samples;
  platform::Action action;

  platform::View body() const;
};

/// A sample's page among the described views.
struct ZoomTextWebView {
  AppearanceFontSize fontSize = AppearanceFontSize::normal;
  std::shared_ptr<ZoomSamples> samples;

  platform::View body() const;
};

}  // namespace velkin
