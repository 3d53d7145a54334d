#pragma once

#include "Platform/View/View.h"

namespace velkin {

/// The place of the search bar in its panel. The search bar itself is still to come; until then no key and no
/// control opens the panel.
struct SearchBarView {
  platform::View body() const { return platform::Text("Search").font(platform::Font::title); }
};

}  // namespace velkin
