#pragma once

#include "Platform/Gtk/GtkRenderedView.h"

#include <memory>

namespace platform {

/// The kinds that show something or take input; nullptr for any other kind.
std::unique_ptr<GtkRenderedView> renderControl(const Element& element);

}  // namespace platform
