#pragma once

namespace velkin {

/// What the Appearance panel asks of the controller. Main thread.
class AppearanceUIViewDelegate {
 public:
  virtual ~AppearanceUIViewDelegate() = default;
  virtual void didClickReleaseNotesButton() = 0;
  virtual void didClickOnboardingButton() = 0;
  virtual void didClickEditUrlsButton() = 0;
  virtual void didClickToolbarCheckbox() = 0;
  /// Points. The window takes the size at once.
  virtual void updateWebViewWindowSize(double width, double height) = 0;
};

}  // namespace velkin
