#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/SidebarGroup.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velkin {

/// The button of a group, and in its bubble the editor. In the pickers 0 is nothing chosen, and i the view
/// before the i-th place.
struct EditSidebarGroupButtonView {
  using DoneClicked =
      std::function<void(std::optional<WebViewSwitchType> mainView, std::optional<WebViewSwitchType> sideBar1,
                         std::optional<WebViewSwitchType> sideBar2, bool isFullScreen)>;

  /// Those that can stand in a group.
  std::vector<WebViewSwitchType> viewTypes = [] {
    std::vector<WebViewSwitchType> types(webViews.begin(), webViews.end());
    types.push_back(WebViewSwitchType::markdown);
    return types;
  }();
  /// From 1.
  int groupNumber = 1;
  std::string imageIconName;
  std::string title;
  platform::Binding<SidebarGroup> group;
  /// No group is stored yet.
  platform::Binding<bool> isGroupNil;
  platform::State<bool> shouldShowPopover{false};
  platform::State<bool> isChecked{false};
  platform::State<int> mainView{0};
  platform::State<int> sidebar1{0};
  platform::State<int> sideBar2{0};
  platform::State<bool> isHovering{false};
  DoneClicked doneClicked = {};

  platform::View body() const;

  bool didNotSetMain() const { return mainView.get() == 0; }
  bool didNotSetSide1() const { return sidebar1.get() == 0; }
  bool didNotSetSide2() const { return sideBar2.get() == 0; }
  bool didNotSetMainOrAnySideBar() const { return didNotSetMain() && didNotSetSide1() && didNotSetSide2(); }
  /// Unless the main view stands in both sidebars.
  bool didNotDuplicateMain() const;
  std::string getPickerText(int index) const;
  /// A group has a main view and at least one sidebar, and no view twice.
  bool isDoneDisabled() const;
  void done() const;

 private:
  platform::View editor() const;
  platform::View label() const;
  std::string firstLine() const;
  std::string secondLine() const;
  std::optional<WebViewSwitchType> viewAt(int position) const;
  void takeGroup() const;
};

}  // namespace velkin
