#pragma once

#include "Keyboard/LocalEventMonitor.h"
#include "Keyboard/Name.h"
#include "Keyboard/Shortcut.h"
#include "Platform/NSNotificationCenter.h"
#include "Platform/View/ViewPlace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velkin::KeyboardShortcuts {

/// The control that records one global shortcut: it shows what is stored under its name, and while it records
/// it takes the next combination of keys. It records from `focus` until a combination was taken, the user has
/// gone elsewhere or given up, or it is gone itself. What the user sees of it is drawn by `Recorder`.
///
/// Having the keyboard alone doesn't start it: the first control of a window gets the keyboard by itself, and
/// who tabs through a panel would lose the keys. Main thread.
class RecorderCocoa : public std::enable_shared_from_this<RecorderCocoa> {
 public:
  /// Points.
  static constexpr double minimumWidth = 130;
  /// How far around the control a click still counts as one on it, in points.
  static constexpr double margin = 3;
  using OnChange = std::function<void(const std::optional<Shortcut>&)>;

  explicit RecorderCocoa(Name name, OnChange onChange = {});
  ~RecorderCocoa();
  RecorderCocoa(const RecorderCocoa&) = delete;
  RecorderCocoa& operator=(const RecorderCocoa&) = delete;

  /// Called when anything below has changed.
  std::function<void()> didChange;
  /// Called when it wants the keyboard.
  std::function<void()> wantsKeyboard;
  /// Where it is on show.
  const std::shared_ptr<platform::ViewPlace> place = std::make_shared<platform::ViewPlace>();

  const Name& shortcutName() const noexcept { return shortcutName_; }
  void setShortcutName(Name name);
  /// The shortcut in glyphs; empty for none.
  const std::string& stringValue() const noexcept { return stringValue_; }
  std::string_view placeholderString() const noexcept;
  bool showsCancelButton() const noexcept { return !stringValue_.empty(); }
  bool isRecording() const noexcept { return eventMonitor_ != nullptr; }
  bool canBecomeKeyView() const noexcept { return canBecomeKey_; }

  /// It is in a window now. It can take the keyboard from the next turn of the main loop on, so that it
  /// doesn't by the window's opening.
  void viewDidMoveToWindow();
  /// Takes the keyboard and starts recording.
  void focus();
  /// Stops recording.
  void blur();
  /// The cancel button: nothing is stored under the name then, and the next combination may come at once.
  void performCancelClick();
  /// The keyboard went elsewhere.
  void controlTextDidEndEditing();

  /// Stops whichever control records, for a window that goes.
  static void stopRecording();

 private:
  bool becomeFirstResponder();
  void controlTextDidChange();
  void showStored();
  void setStringValue(std::string text);
  void saveShortcut(const std::optional<Shortcut>& shortcut);
  std::optional<platform::NSEvent> handle(const platform::NSEvent& event);
  std::optional<platform::NSEvent> handleKey(const platform::NSEvent& event);
  bool isOutside(const platform::NSEvent& event) const;
  void refuse(const std::string& title, const std::string& message);

  std::unique_ptr<LocalEventMonitor> eventMonitor_;
  OnChange onChange_;
  platform::Connection observer_;
  bool canBecomeKey_ = false;
  Name shortcutName_;
  std::string stringValue_;
};

}  // namespace velkin::KeyboardShortcuts
