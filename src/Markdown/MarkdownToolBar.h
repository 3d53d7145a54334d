#pragma once

#include "Platform/View/View.h"

#include <string>
#include <vector>

namespace velkin {

/// A button of a scratchpad's tool bar. A click leaves the keyboard to the editor.
platform::View markdownTool(const std::string& imageName, const std::string& title, double iconSize,
                            platform::Action action);

/// Groups of buttons in one row, which scrolls where the window is too narrow for it.
platform::View markdownToolBar(const std::string& name, const std::vector<platform::Views>& groups);

}  // namespace velkin
