#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/DynamicProperty.h"
#include "Platform/View/Style.h"

#include <any>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <typeindex>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class NSView;
class View;
struct Element;

using Action = std::function<void()>;

/// What a view of the program is: a plain value that describes itself.
template <class V>
concept DescribedView = requires(const V& view) {
  { view.body() } -> std::convertible_to<View>;
};

/// A piece of the description of what is on screen: a cheap, immutable value. See docs/views.md.
class View {
 public:
  /// Nothing, which still keeps its position among its siblings.
  View();
  explicit View(Element element);

  /// A view of the program. Its `State` fields keep their values while a view of the same type stands at the
  /// same position.
  template <DescribedView V>
  View(V view);

  const Element& element() const noexcept { return *element_; }
  bool isEmpty() const noexcept;

  View frame(Frame frame) const;
  View padding(double length = 16) const { return padding(EdgeInsets::all(length)); }
  /// Inside a background that follows, outside one that stands already.
  View padding(EdgeInsets insets) const;
  View background(Color color) const;
  View cornerRadius(double radius) const;
  View border(Color color) const;
  View opacity(double opacity) const;
  View font(Font font) const;
  View font(SystemFont font) const;
  View bold() const;
  View foregroundColor(Color color) const;
  View multilineTextAlignment(Alignment alignment) const;
  View lineLimit(int lines) const;
  /// The text shown when the pointer rests on the view.
  View help(std::string text) const;
  View disabled(bool disabled) const;
  /// Takes the keyboard focus when the binding turns true, and follows it.
  View focused(Binding<bool> isFocused) const;
  View onTapGesture(Action action) const;
  View onHover(std::function<void(bool isInside)> action) const;
  View onAppear(Action action) const;
  View onDisappear(Action action) const;
  /// Runs `action` when the view is built again with a `value` that differs from the last one.
  template <std::equality_comparable T>
  View onChange(T value, std::function<void(const T&)> action) const;
  /// The name by which assistive tools and tests find the view.
  View accessibilityLabel(std::string label) const;
  /// Shows `content` in a bubble at this view while the binding is true; the user can close it.
  View popover(Binding<bool> isPresented, std::function<View()> content) const;

 private:
  template <class Change>
  View modified(Change change) const;
  std::shared_ptr<const Element> element_;
};

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
/// Each child is a row: a group of cells.
struct GridContent {
  double rowSpacing = 8;
  double columnSpacing = 8;
};
struct ScrollContent {};
/// Children in the place of one.
struct GroupContent {};
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
                 GridContent, ScrollContent, GroupContent, PopoverContent, HostedContent, CompositeContent>;

struct ChangeHandler {
  std::any value;
  bool (*isEqual)(const std::any&, const std::any&);
  std::function<void(const std::any&)> action;
};

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
  bool isDisabled = false;
  std::optional<Binding<bool>> focused;
  Action onTap;
  std::function<void(bool)> onHover;
  Action onAppear;
  Action onDisappear;
  std::vector<ChangeHandler> onChange;
};

struct Element {
  ElementContent content;
  Modifiers modifiers;
  std::vector<View> children;
};

using Views = std::vector<View>;

struct StackOptions {
  double spacing = 8;
  Alignment alignment = Alignment::center;
};
struct TextFieldOptions {
  Action onCommit;
  bool isSecure = false;
  /// Without a frame and a background of its own.
  bool isPlain = false;
  /// Something was typed or pasted that the field can't hold as a whole: its text is the part that it can.
  Action onCut = {};
};

View EmptyView();
View Text(std::string text);
/// A symbol of the desktop's icon theme, by the system's name for it.
View Symbol(std::string name);
/// An image of the program.
View Image(std::string name);
View Button(std::string title, Action action, ButtonStyle style = ButtonStyle::bordered);
View Button(View label, Action action, ButtonStyle style = ButtonStyle::bordered);
View TextField(std::string placeholder, Binding<std::string> text, TextFieldOptions options = {});
View TextEditor(Binding<std::string> text);
View Picker(std::string title, std::vector<std::string> options, Binding<int> selection,
            PickerStyle style = PickerStyle::menu);
View CheckBox(std::string title, Binding<bool> isOn);
View ProgressView();
View Divider();
View Spacer();
View HStack(Views children);
View HStack(StackOptions options, Views children);
View VStack(Views children);
View VStack(StackOptions options, Views children);
View ZStack(Views children);
View Grid(Views rows, GridContent options = {});
View ScrollView(View content);
View Group(Views children);
/// `make` is called once when the view comes on show, `update` then and each time it is built again.
View HostedView(const void* identity, std::function<NSView*()> make, std::function<void(NSView&)> update);
/// `view()` if `condition` holds, else nothing, which keeps the position.
View when(bool condition, const std::function<View()>& view);

template <DescribedView V>
View::View(V view) {
  DynamicProperty::Capture capture;
  auto kept = std::make_shared<V>(std::move(view));
  *this = View(Element{CompositeContent{typeid(V), kept, [raw = kept.get()]() -> View { return raw->body(); },
                                        capture.within(kept.get(), sizeof(V))},
                       {},
                       {}});
}

namespace detail {
View withChangeHandler(const View& view, ChangeHandler handler);
}

template <std::equality_comparable T>
View View::onChange(T value, std::function<void(const T&)> action) const {
  return detail::withChangeHandler(*this, {std::any(std::move(value)),
                                           [](const std::any& a, const std::any& b) {
                                             const auto* left = std::any_cast<T>(&a);
                                             const auto* right = std::any_cast<T>(&b);
                                             return left != nullptr && right != nullptr && *left == *right;
                                           },
                                           [action = std::move(action)](const std::any& now) {
                                             if (const auto* typed = std::any_cast<T>(&now)) action(*typed);
                                           }});
}

}  // namespace platform
