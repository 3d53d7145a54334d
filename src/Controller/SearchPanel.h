#pragma once

#include "Controller/ViewFactory.h"
#include "Platform/NSPanel.h"

#include <memory>

namespace velkin {

/// The search bar's floating panel: a new one at each opening. Main thread.
class SearchPanel : public platform::NSWindowDelegate {
 public:
  explicit SearchPanel(const ViewFactory& views) : views_(views) {}

  /// False if there is no screen for it.
  bool open();
  /// True if there was one to close.
  bool close();
  /// nullptr means closed.
  const std::unique_ptr<platform::NSPanel>& panel() const { return panel_; }

  /// For the key router: stays true when the panel was closed by Escape.
  bool isSearchBarOpen = false;

  /// Whoever closes it, the window manager included, closes it here.
  void windowWillClose(platform::NSPanel& panel) override;

 private:
  const ViewFactory& views_;
  std::unique_ptr<platform::NSPanel> panel_;
};

}  // namespace velkin
