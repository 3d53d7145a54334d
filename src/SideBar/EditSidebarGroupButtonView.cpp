#include "SideBar/EditSidebarGroupButtonView.h"

#include "Components/MarkdownUIMenuButton.h"
#include "SideBar/CheckboxUIView.h"

namespace velkin {

using namespace platform;

namespace {

constexpr const char* nothing = "---";
constexpr double buttonWidth = 150;
constexpr double editorWidth = 300;

std::string nameOf(const std::optional<WebViewSwitchType>& view) {
  return view ? std::string(viewName(*view)) : nothing;
}

int positionOf(const std::optional<WebViewSwitchType>& view) { return view ? rawValue(*view) + 1 : 0; }

}  // namespace

bool EditSidebarGroupButtonView::didNotDuplicateMain() const {
  const int main = mainView.get();
  return !(main == sidebar1.get() && main == sideBar2.get());
}

std::string EditSidebarGroupButtonView::getPickerText(int index) const {
  const auto view = viewAt(index);
  return view ? std::string(viewName(*view)) : "- - -";
}

bool EditSidebarGroupButtonView::isDoneDisabled() const {
  const int main = mainView.get();
  const int first = sidebar1.get();
  const int second = sideBar2.get();
  return didNotSetMain() || main == first || main == second || first == second;
}

std::optional<WebViewSwitchType> EditSidebarGroupButtonView::viewAt(int position) const {
  if (position <= 0 || static_cast<std::size_t>(position) > viewTypes.size()) return std::nullopt;
  return viewTypes[static_cast<std::size_t>(position) - 1];
}

void EditSidebarGroupButtonView::done() const {
  if (isDoneDisabled()) return;
  const auto main = viewAt(mainView.get());
  const auto first = viewAt(sidebar1.get());
  const auto second = viewAt(sideBar2.get());
  const bool isFullScreen = isChecked.get();
  group.set({.isFullScreen = isFullScreen, .mainView = *main, .sideBar1 = first, .sideBar2 = second});
  shouldShowPopover.set(false);
  if (doneClicked) doneClicked(main, first, second, isFullScreen);
}

void EditSidebarGroupButtonView::takeGroup() const {
  const auto stored = group.get();
  mainView.set(positionOf(stored.mainView));
  sidebar1.set(positionOf(stored.sideBar1));
  sideBar2.set(positionOf(stored.sideBar2));
  isChecked.set(stored.isFullScreen);
}

std::string EditSidebarGroupButtonView::firstLine() const {
  if (isGroupNil.get()) return nothing;
  const auto stored = group.get();
  return (stored.isFullScreen ? "🅵" : "") + std::string(viewName(stored.mainView));
}

std::string EditSidebarGroupButtonView::secondLine() const {
  if (isGroupNil.get()) return {};
  const auto stored = group.get();
  return nameOf(stored.sideBar1) + " " + nameOf(stored.sideBar2);
}

View EditSidebarGroupButtonView::label() const {
  return HStack({.spacing = 10},
                {Symbol(imageIconName).frame({.height = 24}),
                 VStack({.spacing = 0, .alignment = Alignment::leading},
                        {Text(firstLine())
                             .lineLimit(1)
                             .frame({.maxWidth = buttonWidth, .alignment = Alignment::leading}),
                         when(!isGroupNil.get(),
                              [this] {
                                return Text(secondLine())
                                    .font(Font::caption)
                                    .opacity(0.7)
                                    .lineLimit(1)
                                    .frame({.maxWidth = buttonWidth, .alignment = Alignment::leading});
                              })}),
                 Spacer()})
      .frame({.width = buttonWidth, .minHeight = 34});
}

View EditSidebarGroupButtonView::editor() const {
  std::vector<std::string> options;
  for (std::size_t i = 0; i <= viewTypes.size(); ++i) options.push_back(getPickerText(static_cast<int>(i)));
  const auto row = [&](const char* name, const State<int>& position) {
    return Group({Text(name).foregroundColor(Color::Role::primary).frame({.alignment = Alignment::leading}),
                  Picker(name, options, position.binding()).frame({.maxWidth = infinity})});
  };
  return VStack({.spacing = 10, .alignment = Alignment::fill},
                {Text("SideBar Group #" + std::to_string(groupNumber))
                     .font(Font::title)
                     .accessibilityRole(AccessibilityRole::heading),
                 View(CheckboxUIView{.title = "FullScreen: ",
                                     .tooltip = "Check to open group as FullScreen.",
                                     .isChecked = isChecked.binding(),
                                     .isHovering = isHovering.binding()}),
                 Grid({row("Main View", mainView), row("Sidebar 1 ", sidebar1), row("Sidebar 2 ", sideBar2)},
                      {.rowSpacing = 6, .columnSpacing = 12}),
                 View(MarkdownUIMenuButton{.title = "Done",
                                           .toolTip = "Create group.",
                                           .shouldCenterTitle = true,
                                           .action = [self = *this] { self.done(); },
                                           .isDisabled = isDoneDisabled()}),
                 Text("Select main view and at least 1 other to create a group.")
                     .font(Font::caption2)
                     .opacity(0.5)
                     .frame({.width = editorWidth})})
      .padding(14);
}

View EditSidebarGroupButtonView::body() const {
  const auto name = title + ": " + firstLine() + (isGroupNil.get() ? "" : ", " + secondLine());
  return View(Button(label(), [show = shouldShowPopover] { show.set(true); }))
      .help(title)
      .accessibilityLabel(name)
      .onAppear([self = *this] { self.takeGroup(); })
      .popover(shouldShowPopover.binding(), [self = *this] { return self.editor(); });
}

}  // namespace velkin
