#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/View.h"

#include <string>

namespace velkin {

/// A coloured text button of the search bar.
struct SearchButtonUIView {
  std::string title;
  platform::Color color;
  platform::Binding<bool> isDisabled;
  platform::Action action;

  platform::View body() const;
};

}  // namespace velkin
