#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/DynamicProperty.h"
#include "Platform/View/Style.h"
#include "Platform/View/ViewPlace.h"

#include <any>
#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <typeindex>
#include <utility>
#include <vector>

namespace platform {

class View;
struct Element;
struct ChangeHandler;

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
  /// What the view is for assistive tools, where its kind doesn't say it. Fixed once the view is on show.
  View accessibilityRole(AccessibilityRole role) const;
  /// A click leaves the keyboard where it is; Tab still reaches the view. For the buttons of a tool bar.
  View leavesKeyboard() const;
  /// Told when a mouse button goes down on the view and when it comes up again, wherever the pointer is by
  /// then.
  View onPress(std::function<void(bool isDown)> action) const;
  /// The user can select the text and copy it.
  View selectable() const;
  /// Has `place` tell where the view lies in its window, for as long as it stands there.
  View placed(std::shared_ptr<ViewPlace> place) const;
  /// Shows `content` in a bubble at this view while the binding is true; the user can close it.
  View popover(Binding<bool> isPresented, const std::function<View()>& content) const;

 private:
  template <class Change>
  View modified(Change change) const;
  std::shared_ptr<const Element> element_;
};

using Views = std::vector<View>;

/// What is done when a value is another one than at the last building.
struct ChangeHandler {
  std::any value;
  bool (*isEqual)(const std::any&, const std::any&);
  std::function<void(const std::any&)> action;
};

namespace detail {
View withChangeHandler(const View& view, ChangeHandler handler);
View composite(std::type_index type, std::shared_ptr<const void> view, std::function<View()> body,
               std::vector<DynamicProperty*> properties);
}  // namespace detail

template <DescribedView V>
View::View(V view) {
  DynamicProperty::Capture capture;
  auto kept = std::make_shared<V>(std::move(view));
  auto properties = capture.within(kept.get(), sizeof(V));
  *this = detail::composite(
      typeid(V), kept, [raw = kept.get()]() -> View { return raw->body(); }, std::move(properties));
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
