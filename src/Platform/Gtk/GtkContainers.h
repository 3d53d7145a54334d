#pragma once

#include "Platform/Gtk/GtkRenderedView.h"

#include <memory>

namespace platform {

// The kinds that hold other views.
std::unique_ptr<GtkRenderedView> renderKind(const StackContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const GridContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const ScrollContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const PopoverContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const HostedContent& content, const Element& element);

}  // namespace platform
