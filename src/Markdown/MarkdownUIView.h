#pragma once

#include "Platform/View/View.h"

namespace velkin {

/// The place of the scratchpad among the views. The scratchpad itself is still to come; until then no control
/// leads here.
struct MarkdownUIView {
  platform::View body() const {
    return platform::VStack(
        {platform::Spacer(), platform::Text("Markdown").font(platform::Font::title), platform::Spacer()});
  }
};

}  // namespace velkin
