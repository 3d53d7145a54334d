#include "Platform/TrayClicks.h"

namespace platform {

namespace {

TrayClicks ofTheDesktop = TrayClicks::action;

}  // namespace

TrayClicks trayClicks() noexcept { return ofTheDesktop; }

void setTrayClicks(TrayClicks clicks) noexcept { ofTheDesktop = clicks; }

}  // namespace platform
