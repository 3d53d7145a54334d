#include "Controller/SearchPanel.h"

#include "Platform/DispatchQueue.h"
#include "Platform/NSScreen.h"
#include "Values/AppearanceWidth.h"

#include <memory>
#include <utility>

namespace velkin {

using platform::NSPanel;

namespace {

constexpr double panelHeight = 200;

}  // namespace

bool SearchPanel::open() {
  const auto screen = platform::NSScreen::main();
  if (!screen) return false;
  const double width = searchBarSize(AppearanceWidth::medium);
  const auto& frame = screen->frame;
  panel_ = NSPanel::make({{frame.midX() / 2, frame.midY()}, {width, panelHeight}},
                         NSPanel::nonactivatingPanel | NSPanel::titled);
  panel_->setFrameOrigin({frame.midX() - width / 2, frame.midY() * 1.3 - panelHeight / 2});
  panel_->setContentViewController(views_.searchBar());
  panel_->setTitle("Velkin - Search Bar");
  panel_->delegate = this;
  panel_->setFloatingPanel(true);
  panel_->makeKeyAndOrderFront();
  return true;
}

bool SearchPanel::close() {
  if (!panel_) return false;
  panel_->close();
  return true;
}

void SearchPanel::windowWillClose(platform::NSPanel&) {
  // It is in the middle of closing: it goes in a later turn.
  platform::DispatchQueue::main().async([closing = std::shared_ptr<platform::NSPanel>(std::move(panel_))] {});
}

}  // namespace velkin
