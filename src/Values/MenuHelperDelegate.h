#pragma once

namespace velkin {

/// What the status menu and the toolbar ask of the controller. Main thread.
class MenuHelperDelegate {
 public:
  virtual ~MenuHelperDelegate() = default;
  virtual void aboutClicked() = 0;
  virtual void homeClicked() = 0;
  virtual void shortcutsClicked() = 0;
  virtual void appearanceClicked() = 0;
  virtual void preferencesClicked() = 0;
  virtual void previewClicked() = 0;
  virtual void toolbarClicked() = 0;
  virtual void stickyClicked() = 0;
  virtual void experimentalClicked() = 0;
  virtual void reloadClicked() = 0;
  virtual void openClicked() = 0;
  virtual void quitClicked() = 0;
};

}  // namespace velkin
