#include "Platform/View/View.h"

namespace platform {

namespace {

const std::shared_ptr<const Element>& emptyElement() {
  static const auto empty = std::make_shared<const Element>();
  return empty;
}

template <class Content>
View made(Content content, Views children = {}) {
  return View(Element{std::move(content), {}, std::move(children)});
}

/// A kind that has no widget of its own, so nothing that a modifier could be put on.
bool isTransparent(const Element& element) {
  return std::holds_alternative<CompositeContent>(element.content) ||
         std::holds_alternative<GroupContent>(element.content) ||
         std::holds_alternative<ForEachContent>(element.content) ||
         std::holds_alternative<PopoverContent>(element.content);
}

}  // namespace

View::View() : element_(emptyElement()) {}

View::View(Element element) : element_(std::make_shared<const Element>(std::move(element))) {}

bool View::isEmpty() const noexcept { return std::holds_alternative<EmptyContent>(element_->content); }

template <class Change>
View View::modified(Change change) const {
  if (isEmpty()) return *this;
  Element copy = isTransparent(*element_)
                     ? Element{StackContent{Axis::vertical, 0, Alignment::fill}, {}, {*this}}
                     : *element_;
  change(copy.modifiers);
  return View(std::move(copy));
}

View View::frame(Frame frame) const {
  return modified([&](Modifiers& m) {
    auto take = [](auto& field, const auto& value) {
      if (value) field = value;
    };
    take(m.frame.width, frame.width);
    take(m.frame.height, frame.height);
    take(m.frame.minWidth, frame.minWidth);
    take(m.frame.minHeight, frame.minHeight);
    take(m.frame.maxWidth, frame.maxWidth);
    take(m.frame.maxHeight, frame.maxHeight);
    take(m.frame.alignment, frame.alignment);
  });
}

View View::padding(EdgeInsets insets) const {
  return modified([&](Modifiers& m) {
    auto& side = m.background || m.border ? m.margin : m.padding;
    side = side + insets;
  });
}

View View::background(Color color) const {
  return modified([&](Modifiers& m) { m.background = color; });
}

View View::cornerRadius(double radius) const {
  return modified([&](Modifiers& m) { m.cornerRadius = radius; });
}

View View::border(Color color) const {
  return modified([&](Modifiers& m) { m.border = color; });
}

View View::opacity(double opacity) const {
  return modified([&](Modifiers& m) { m.opacity = opacity; });
}

View View::font(Font font) const {
  return modified([&](Modifiers& m) { m.font = font; });
}

View View::font(SystemFont font) const {
  return modified([&](Modifiers& m) { m.systemFont = font; });
}

View View::bold() const {
  return modified([](Modifiers& m) { m.isBold = true; });
}

View View::foregroundColor(Color color) const {
  return modified([&](Modifiers& m) { m.foreground = color; });
}

View View::multilineTextAlignment(Alignment alignment) const {
  return modified([&](Modifiers& m) { m.textAlignment = alignment; });
}

View View::lineLimit(int lines) const {
  return modified([&](Modifiers& m) { m.lineLimit = lines; });
}

View View::help(std::string text) const {
  return modified([&](Modifiers& m) { m.help = std::move(text); });
}

View View::disabled(bool disabled) const {
  return modified([&](Modifiers& m) { m.isDisabled = m.isDisabled || disabled; });
}

View View::focused(Binding<bool> isFocused) const {
  return modified([&](Modifiers& m) { m.focused = std::move(isFocused); });
}

View View::onTapGesture(Action action) const {
  return modified([&](Modifiers& m) { m.onTap = std::move(action); });
}

View View::onHover(std::function<void(bool)> action) const {
  return modified([&](Modifiers& m) { m.onHover = std::move(action); });
}

View View::onAppear(Action action) const {
  return modified([&](Modifiers& m) { m.onAppear = std::move(action); });
}

View View::onDisappear(Action action) const {
  return modified([&](Modifiers& m) { m.onDisappear = std::move(action); });
}

View View::accessibilityLabel(std::string label) const {
  return modified([&](Modifiers& m) { m.label = std::move(label); });
}

View View::accessibilityRole(AccessibilityRole role) const {
  return modified([&](Modifiers& m) { m.role = role; });
}

View View::leavesKeyboard() const {
  return modified([](Modifiers& m) { m.leavesKeyboard = true; });
}

View View::onPress(std::function<void(bool)> action) const {
  return modified([&](Modifiers& m) { m.onPress = std::move(action); });
}

View View::selectable() const {
  return modified([](Modifiers& m) { m.isSelectable = true; });
}

View View::placed(std::shared_ptr<ViewPlace> place) const {
  return modified([&](Modifiers& m) { m.place = std::move(place); });
}

View View::popover(Binding<bool> isPresented, const std::function<View()>& content) const {
  Views children = {*this, isPresented.get() ? content() : View()};
  return View(Element{PopoverContent{std::move(isPresented)}, {}, std::move(children)});
}

View detail::withChangeHandler(const View& view, ChangeHandler handler) {
  if (view.isEmpty()) return view;
  Element copy = isTransparent(view.element())
                     ? Element{StackContent{Axis::vertical, 0, Alignment::fill}, {}, {view}}
                     : view.element();
  copy.modifiers.onChange.push_back(std::move(handler));
  return View(std::move(copy));
}

View detail::composite(std::type_index type, std::shared_ptr<const void> view, std::function<View()> body,
                       std::vector<DynamicProperty*> properties) {
  return made(CompositeContent{type, std::move(view), std::move(body), std::move(properties)});
}

View EmptyView() { return {}; }

View Text(std::string text) { return made(TextContent{std::move(text)}); }

View Symbol(std::string name) { return made(ImageContent{ImageContent::Source::symbol, std::move(name)}); }

View Image(std::string name) { return made(ImageContent{ImageContent::Source::asset, std::move(name)}); }

View Button(std::string title, Action action, ButtonStyle style) {
  return Button(Text(std::move(title)), std::move(action), style);
}

View Button(View label, Action action, ButtonStyle style) {
  return made(ButtonContent{std::move(action), style}, {std::move(label)});
}

View TextField(std::string placeholder, Binding<std::string> text, TextFieldOptions options) {
  return made(TextFieldContent{std::move(placeholder), std::move(text), std::move(options.onCommit),
                               options.isSecure, options.isPlain, std::move(options.onCut),
                               std::move(options.onWake)});
}

View TextEditor(Binding<std::string> text) { return made(TextEditorContent{std::move(text)}); }

View Picker(std::string title, std::vector<std::string> options, Binding<int> selection, PickerStyle style) {
  return made(PickerContent{std::move(title), std::move(options), std::move(selection), style});
}

View CheckBox(std::string title, Binding<bool> isOn) {
  return made(CheckBoxContent{std::move(title), std::move(isOn)});
}

View ProgressView() { return made(ProgressContent{}); }
View Divider() { return made(DividerContent{}); }
View Spacer() { return made(SpacerContent{}); }

View HStack(Views children) { return HStack({}, std::move(children)); }
View HStack(StackOptions options, Views children) {
  return made(StackContent{Axis::horizontal, options.spacing, options.alignment}, std::move(children));
}
View VStack(Views children) { return VStack({}, std::move(children)); }
View VStack(StackOptions options, Views children) {
  return made(StackContent{Axis::vertical, options.spacing, options.alignment}, std::move(children));
}
View ZStack(Views children) {
  return made(StackContent{Axis::depth, 0, Alignment::center}, std::move(children));
}

View Grid(Views rows, GridContent options) { return made(options, std::move(rows)); }
View ScrollView(View content, Axis axis) { return made(ScrollContent{axis}, {std::move(content)}); }
View Group(Views children) { return made(GroupContent{}, std::move(children)); }
View ForEach(std::vector<std::string> keys, Views children) {
  keys.resize(children.size());
  return made(ForEachContent{std::move(keys)}, std::move(children));
}

View HostedView(const void* identity, std::function<NSView*()> make, std::function<void(NSView&)> update) {
  return made(HostedContent{identity, std::move(make), std::move(update)});
}

View when(bool condition, const std::function<View()>& view) { return condition ? view() : View(); }

}  // namespace platform
