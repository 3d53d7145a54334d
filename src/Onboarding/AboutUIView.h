#pragma once

#include "Platform/NSBundle.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/View.h"
#include "UserData/AdditionalViews.h"
#include "Values/PageDelegates.h"

#include <memory>
#include <string>

namespace velkin {

/// Who and what the program is, and the doors to its other pages.
struct AboutUIView {
  /// What the build says of the program.
  platform::NSBundle dictionary = platform::NSBundle::main();
  AboutUIViewDelegate* delegate = nullptr;
  platform::ObservedObject<AdditionalViews> isHemingwayEnabled{std::make_shared<AdditionalViews>()};

  platform::View body() const;
  /// Empty if the build doesn't say when it was made.
  std::string getBuildDate() const;

 private:
  void easterEggAction() const;
  std::string versions() const;
};

}  // namespace velkin
