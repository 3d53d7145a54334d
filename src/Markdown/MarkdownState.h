#pragma once

#include "Platform/View/ObservableObject.h"

#include <string>

namespace velkin {

/// A text that could be carried from one view to another.
class MarkdownState : public platform::ObservableObject {
 public:
  platform::Published<std::string> text{*this, ""};
};

}  // namespace velkin
