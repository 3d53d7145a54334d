#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/WindowAppearance.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceUIViewDelegate.h"
#include "Values/AppearanceWidth.h"

#include <memory>

namespace velkin {

/// The choice of the window's size, with a miniature of the window on the user's desktop. It follows a size
/// that is changed elsewhere.
struct SizePickerUIView {
  AppearanceUIViewDelegate* delegate = nullptr;
  UserDefaultsHelper defaults = {};
  platform::State<AppearanceWidth> selectedWidth{fromRawValue<AppearanceWidth>(defaults.webViewWidth())};
  platform::State<AppearanceHeight> selectedHeight{fromRawValue<AppearanceHeight>(defaults.webViewHeight())};
  platform::ObservedObject<WindowAppearance> changes{std::make_shared<WindowAppearance>()};

  platform::View body() const;
};

/// The two scales as radio groups. A choice is stored, and the window takes its size.
struct SizeRadioUIView {
  AppearanceUIViewDelegate* delegate = nullptr;
  UserDefaultsHelper defaults = {};
  platform::Binding<AppearanceWidth> selectedWidth;
  platform::Binding<AppearanceHeight> selectedHeight;

  platform::View body() const;
};

}  // namespace velkin
