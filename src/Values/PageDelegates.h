#pragma once

namespace velkin {

// What the pages that lead in and around ask of the controller. Main thread.

class ReleaseNotesUIViewDelegate {
 public:
  virtual ~ReleaseNotesUIViewDelegate() = default;
  /// The end of the reading.
  virtual void didClickReleaseNotesDone() = 0;
};

class AboutUIViewDelegate {
 public:
  virtual ~AboutUIViewDelegate() = default;
  /// The switch of the additional views was turned.
  virtual void didEnableDisableEasterEgg() = 0;
  virtual void didClickReleaseNotesButton() = 0;
  virtual void didClickOnboardingButton() = 0;
  virtual void didClickEditUrlsButton() = 0;
  virtual void didClickToolbarCheckbox() = 0;
  /// The setting is stored already.
  virtual void didClickStartAtLogin(bool isEnabled) = 0;
};

class EasterEggUrlEditingUIViewDelegate {
 public:
  virtual ~EasterEggUrlEditingUIViewDelegate() = default;
  /// The end of the editing.
  virtual void didClickEasterEggUrlEditingDone() = 0;
};

class OnboardingUIViewDelegate {
 public:
  virtual ~OnboardingUIViewDelegate() = default;
  virtual void didCompleteOnboarding() = 0;
};

}  // namespace velkin
