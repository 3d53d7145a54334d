#pragma once

#include "Platform/View/ViewValue.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <typeindex>
#include <variant>
#include <vector>

namespace platform {

class NSView;

struct TextContent {
  std::string text;
};
struct ImageContent {
  enum class Source { symbol, asset };
  Source source;
  /// A symbol's name ("magnifyingglass"), or the name of an image of the program ("Velkin01").
  std::string name;
};
/// The label is the only child.
struct ButtonContent {
  Action action;
  ButtonStyle style = ButtonStyle::bordered;
};
struct TextFieldContent {
  std::string placeholder;
  Binding<std::string> text;
  Action onCommit;
  bool isSecure = false;
  bool isPlain = false;
  /// See TextFieldOptions.
  Action onCut = {};
  Action onWake = {};
};
struct TextEditorContent {
  Binding<std::string> text;
};
struct PickerContent {
  std::string title;
  std::vector<std::string> options;
  /// The position of the chosen option.
  Binding<int> selection;
  PickerStyle style = PickerStyle::menu;
};
struct CheckBoxContent {
  std::string title;
  Binding<bool> isOn;
};
struct ProgressContent {};
struct DividerContent {};
struct SpacerContent {};
struct StackContent {
  Axis axis;
  double spacing = 8;
  Alignment alignment = Alignment::center;
};
/// Each child is a row: a group of cells, of which an empty one keeps its column.
struct GridContent {
  double rowSpacing = 8;
  double columnSpacing = 8;
};
struct ScrollContent {
  /// The direction in which what is too long can be moved.
  Axis axis = Axis::vertical;
};
/// Children in the place of one.
struct GroupContent {};
/// As a group whose children keep their state and their widgets by their keys, wherever they move to. One key
/// for each child; of children with the same key the first one before is the first one after.
struct ForEachContent {
  std::vector<std::string> keys;
};
/// The first child is the anchor, the second what the bubble holds while it is presented.
struct PopoverContent {
  Binding<bool> isPresented;
};
/// A platform view among the described ones.
struct HostedContent {
  /// Which view it is: another identity at the same place makes it anew.
  const void* identity;
  std::function<NSView*()> makeNSView;
  std::function<void(NSView&)> updateNSView;
};
/// A view of the program; its body is the only child.
struct CompositeContent {
  std::type_index type;
  std::shared_ptr<const void> view;
  std::function<View()> body;
  std::vector<DynamicProperty*> properties;
};
struct EmptyContent {};

using ElementContent =
    std::variant<EmptyContent, TextContent, ImageContent, ButtonContent, TextFieldContent, TextEditorContent,
                 PickerContent, CheckBoxContent, ProgressContent, DividerContent, SpacerContent, StackContent,
                 GridContent, ScrollContent, GroupContent, ForEachContent, PopoverContent, HostedContent,
                 CompositeContent>;

struct Modifiers {
  Frame frame;
  EdgeInsets padding;
  EdgeInsets margin;
  std::optional<Color> background;
  std::optional<Color> border;
  std::optional<double> cornerRadius;
  std::optional<double> opacity;
  std::optional<Font> font;
  std::optional<SystemFont> systemFont;
  bool isBold = false;
  std::optional<Color> foreground;
  std::optional<Alignment> textAlignment;
  std::optional<int> lineLimit;
  std::string help;
  std::string label;
  std::optional<AccessibilityRole> role;
  bool isDisabled = false;
  bool leavesKeyboard = false;
  bool isSelectable = false;
  std::shared_ptr<ViewPlace> place;
  std::optional<Binding<bool>> focused;
  Action onTap;
  std::function<void(bool)> onHover;
  std::function<void(bool)> onPress;
  Action onAppear;
  Action onDisappear;
  std::vector<ChangeHandler> onChange;
};

struct Element {
  ElementContent content;
  Modifiers modifiers;
  std::vector<View> children;
};

/// The visitor of `std::visit` that has a function for each kind. Without one for all: whoever visits
/// elements is told by the compiler of a kind that was forgotten.
template <class... Functions>
struct ByKind : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
ByKind(Functions...) -> ByKind<Functions...>;

}  // namespace platform
