#include "SideBar/SidebarGroupUIView.h"

#include "Keyboard/ShortcutLegend.h"
#include "SideBar/EditSidebarGroupButtonView.h"

#include <array>
#include <string>
#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr const char* hint = "⌘# changes groups. (e.g. '⌘1')";

struct Place {
  UserDefault key;
  State<SidebarGroup> SidebarGroupUIView::*group;
  State<bool> SidebarGroupUIView::*isNil;
};

constexpr std::array places = {
    Place{UserDefault::sideBarGroup1, &SidebarGroupUIView::group1, &SidebarGroupUIView::isGroup1Nil},
    Place{UserDefault::sideBarGroup2, &SidebarGroupUIView::group2, &SidebarGroupUIView::isGroup2Nil},
    Place{UserDefault::sideBarGroup3, &SidebarGroupUIView::group3, &SidebarGroupUIView::isGroup3Nil},
    Place{UserDefault::sideBarGroup4, &SidebarGroupUIView::group4, &SidebarGroupUIView::isGroup4Nil}};

View groupButton(const SidebarGroupUIView& view, std::size_t index) {
  const auto& place = places[index];
  const auto number = std::to_string(index + 1);
  return EditSidebarGroupButtonView{
      .groupNumber = static_cast<int>(index) + 1,
      .imageIconName = number + ".square",
      .title = "Sidebar " + number,
      .group = (view.*place.group).binding(),
      .isGroupNil = (view.*place.isNil).binding(),
      .doneClicked = [view, key = place.key](auto mainView, auto sideBar1, auto sideBar2, bool isFullScreen) {
        view.defaults.setSidebarGroup({.isFullScreen = isFullScreen,
                                       .mainView = mainView.value_or(WebViewSwitchType::chatgpt),
                                       .sideBar1 = sideBar1,
                                       .sideBar2 = sideBar2},
                                      key);
        view.updateGroupNilValues();
        if (view.action) view.action();
      }};
}

}  // namespace

SidebarGroup SidebarGroupUIView::stored(UserDefault key) const {
  return defaults.getSidebarGroup(key).value_or(UserDefaultsHelper::defaultSidebarGroup());
}

void SidebarGroupUIView::updateGroupNilValues() const {
  for (const auto& place : places) {
    if (defaults.getSidebarGroup(place.key)) (this->*place.isNil).set(false);
  }
}

View SidebarGroupUIView::body() const {
  return VStack({.spacing = 8, .alignment = Alignment::leading},
                {Text("SideBar").font(Font::title2).accessibilityRole(AccessibilityRole::heading),
                 HStack({groupButton(*this, 0), groupButton(*this, 1)}),
                 HStack({groupButton(*this, 2), groupButton(*this, 3)}),
                 Text(hint)
                     .font(Font::subheadline)
                     .help(std::string(shortcutLegend))
                     .accessibilityLabel(withShortcutLegend(hint))});
}

}  // namespace velkin
