#pragma once

#include "Keyboard/GlobalShortcutChanges.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/View.h"

#include <memory>

namespace velkin {

/// The two global shortcuts, each with its recorder. Where the desktop gives none, what to do instead.
struct GlobalShortcutsEditUIView {
  bool useSmallerFonts = false;
  platform::ObservedObject<GlobalShortcutChanges> changes{std::make_shared<GlobalShortcutChanges>()};

  platform::View body() const;
};

}  // namespace velkin
