#pragma once

#include "Platform/Gtk/GtkRenderedView.h"

#include <memory>

namespace platform {

// The kinds that show something or take input.
std::unique_ptr<GtkRenderedView> renderKind(const TextContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const ImageContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const ButtonContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const TextFieldContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const TextEditorContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const PickerContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const CheckBoxContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const ProgressContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const DividerContent& content, const Element& element);
std::unique_ptr<GtkRenderedView> renderKind(const SpacerContent& content, const Element& element);

}  // namespace platform
