#pragma once

#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// A page or a panel that has its place and its title, and whose content is still to come.
struct PagePlace {
  std::string title;
  /// What stands below the title meanwhile.
  platform::View footer = platform::EmptyView();

  platform::View body() const {
    return platform::VStack({platform::Spacer(), platform::Text(title).font(platform::Font::title), footer,
                             platform::Spacer()})
        .frame({.minWidth = 384, .minHeight = 240});
  }
};

}  // namespace velkin
