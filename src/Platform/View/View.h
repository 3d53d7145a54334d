#pragma once

#include "Platform/View/Element.h"
#include "Platform/View/ViewValue.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

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
  /// While the field is disabled, a key of its window that nothing else has a use for can be meant for it:
  /// Tab, Up and a character ask for the field back by this (the character is typed then), and Return is a
  /// commit. Without it a disabled field hears nothing.
  Action onWake = {};
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
View ScrollView(View content, Axis axis = Axis::vertical);
View Group(Views children);
View ForEach(std::vector<std::string> keys, Views children);
/// A view for each of `items`, which keeps its identity by `key(item)`, a text that no other one has.
template <class Items, class Key, class Make>
View ForEach(const Items& items, Key key, Make make) {
  std::vector<std::string> keys;
  Views children;
  for (const auto& item : items) {
    keys.push_back(key(item));
    children.push_back(View(make(item)));
  }
  return ForEach(std::move(keys), std::move(children));
}
/// `make` is called once when the view comes on show, `update` then and each time it is built again.
View HostedView(const void* identity, std::function<NSView*()> make, std::function<void(NSView&)> update);
/// `view()` if `condition` holds, else nothing, which keeps the position.
View when(bool condition, const std::function<View()>& view);

}  // namespace platform
