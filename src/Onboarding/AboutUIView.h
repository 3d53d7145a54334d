#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSBundle.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/AdditionalViews.h"
#include "UserData/ImportExportManager.h"
#include "Values/PageDelegates.h"

#include <memory>
#include <string>

namespace velkin {

/// Who and what the program is, and the doors to its other pages.
struct AboutUIView {
  ImportExportManager importExportManager{};
  /// What the build says of the program.
  platform::NSBundle dictionary = platform::NSBundle::main();
  AboutUIViewDelegate* delegate = nullptr;
  platform::ObservedObject<AdditionalViews> isHemingwayEnabled{std::make_shared<AdditionalViews>()};

  /// What went wrong with the last import or export.
  platform::State<std::string> failure{};

  platform::State<bool> startsAtLogin{UserDefaultsHelper().startAtLogin()};

  platform::View body() const;
  /// Empty if the build doesn't say when it was made.
  std::string getBuildDate() const;

 private:
  void easterEggAction() const;
  std::string versions() const;
  platform::View startAtLogin() const;
  platform::View userData() const;
};

}  // namespace velkin
