#include "UserData/AdditionalViews.h"

#include "Helpers/UserDefaultsHelper.h"

namespace velkin {

namespace {

constexpr const char* additionalViewsDidChange = "AdditionalViews_didChange";

}  // namespace

AdditionalViews::AdditionalViews()
    : token_(platform::NSNotificationCenter::defaultCenter().addObserver(
          additionalViewsDidChange, [this](const platform::NSNotification&) { notifyObservers(); })) {}

bool AdditionalViews::get() const { return UserDefaultsHelper().hemingwayEnabled(); }

void AdditionalViews::set(bool isEnabled) const {
  UserDefaultsHelper().set(isEnabled, UserDefault::hemingwayEnabled);
  platform::NSNotificationCenter::defaultCenter().post({.name = additionalViewsDidChange});
}

}  // namespace velkin
