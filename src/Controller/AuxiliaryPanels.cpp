#include "Controller/AuxiliaryPanels.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/NSScreen.h"
#include "Values/AppearanceFontSize.h"

#include <string>

namespace velkin {

using platform::NSPanel;

namespace {

std::string appearanceLogLine() {
  /// As the log names the cases.
  constexpr std::array names = {"largest", "larger", "normal", "smaller", "smallest"};
  const auto size = fromRawValue<AppearanceFontSize>(UserDefaultsHelper().webViewZoom());
  return std::string("Appearance... click! ") + names[static_cast<std::size_t>(size)];
}

struct Row {
  const char* title;
  /// The panel's origin, from the middle of the main screen to the left and down, in points.
  double left;
  double below;
  ViewFactory::Controller (ViewFactory::*make)() const;
  std::string (*logLine)();
  /// The content is made before anyone looks whether the panel is there already.
  bool isMadeFirst;
};

const Row& rowOf(AuxiliaryPanels::Kind kind) {
  static constexpr std::array<Row, AuxiliaryPanels::kinds> rows = {
      {{"Velkin - About", 192, 360, &ViewFactory::about, [] { return std::string("About click!"); }, false},
       {"Velkin - Shortcuts", 240, 400, &ViewFactory::shortcuts,
        [] { return std::string("Shortcuts click!"); }, true},
       {"Velkin - Appearance", 240, 400, &ViewFactory::appearance, &appearanceLogLine, false}}};
  return rows[static_cast<std::size_t>(kind)];
}

}  // namespace

AuxiliaryPanels::AuxiliaryPanels(const ViewFactory& views, platform::NSWindowDelegate* delegate)
    : views_(views), delegate_(delegate) {}

void AuxiliaryPanels::open(Kind kind) {
  const auto& row = rowOf(kind);
  auto& slot = slots_[static_cast<std::size_t>(kind)];
  if (!row.isMadeFirst) {
    slot.content.reset();
    if (slot.panel->isVisible()) return;
  }
  platform::debugLog(row.logLine());
  slot.content = (views_.*row.make)();
  if (slot.panel->isVisible()) return;
  const auto screen = platform::NSScreen::main();
  if (!screen) return;
  auto panel = NSPanel::make(slot.content->view().frame(),
                             NSPanel::nonactivatingPanel | NSPanel::titled | NSPanel::closable);
  panel->setContentViewController(slot.content);
  panel->setTitle(row.title);
  show(*panel, {screen->frame.midX() - row.left, screen->frame.midY() - row.below});
  slot.panel = std::move(panel);
}

void AuxiliaryPanels::releaseContents(NSPanel& closing) {
  for (auto& slot : slots_) {
    if (slot.panel->isVisible()) slot.content.reset();
  }
  // A closed panel stays until the next one; its pages and their processes don't.
  closing.setContentViewController(nullptr);
}

void AuxiliaryPanels::show(NSPanel& panel, platform::NSPoint origin) const {
  panel.delegate = delegate_;
  panel.setFrameOrigin(origin);
  panel.setFloatingPanel(true);
  panel.makeKeyAndOrderFront();
}

}  // namespace velkin
