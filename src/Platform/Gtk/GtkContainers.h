#pragma once

#include "Platform/Gtk/GtkRenderedView.h"

#include <memory>

namespace platform {

/// The kinds that hold other views; nullptr for any other kind.
std::unique_ptr<GtkRenderedView> renderContainer(const Element& element);

}  // namespace platform
