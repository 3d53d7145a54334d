#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/SharedState.h"
#include "Values/SidebarGroup.h"

namespace velkin {

/// The four groups, each with a button that opens its editor. A stored group can be changed, but not deleted.
struct SidebarGroupUIView {
  UserDefaultsHelper defaults = {};
  platform::State<SidebarGroup> group1{stored(UserDefault::sideBarGroup1)};
  platform::State<SidebarGroup> group2{stored(UserDefault::sideBarGroup2)};
  platform::State<SidebarGroup> group3{stored(UserDefault::sideBarGroup3)};
  platform::State<SidebarGroup> group4{stored(UserDefault::sideBarGroup4)};
  platform::State<bool> isGroup1Nil{!defaults.sideBarGroup1()};
  platform::State<bool> isGroup2Nil{!defaults.sideBarGroup2()};
  platform::State<bool> isGroup3Nil{!defaults.sideBarGroup3()};
  platform::State<bool> isGroup4Nil{!defaults.sideBarGroup4()};
  platform::ObservedObject<SharedState> sharedState;
  /// After a group was stored.
  platform::Action action = {};

  platform::View body() const;
  /// Looks which groups are stored by now.
  void updateGroupNilValues() const;

 private:
  SidebarGroup stored(UserDefault key) const;
};

}  // namespace velkin
