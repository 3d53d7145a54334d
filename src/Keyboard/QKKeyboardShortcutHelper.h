#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/QKKeyboardShortcutHelperDelegate.h"
#include "Platform/NSEvent.h"
#include "Platform/NSPopover.h"
#include "Platform/NSStatusItem.h"
#include "Values/MenuHelperDelegate.h"

#include <string>
#include <vector>

namespace velkin {

/// Turns the keys pressed in the program's own windows into commands. It remembers which keys are down and
/// judges each combination by that memory. What it doesn't consume goes on to the text field or the page;
/// key-ups never do. One for the life of the process. Main thread.
class QKKeyboardShortcutHelper {
 public:
  /// All of them outlive the router. Installs the three monitors.
  QKKeyboardShortcutHelper(QKKeyboardShortcutHelperDelegate& delegate, platform::NSPopover& popover,
                           platform::NSStatusItem& menuBarItem, MenuHelperDelegate& menuDelegate);
  QKKeyboardShortcutHelper(const QKKeyboardShortcutHelper&) = delete;
  QKKeyboardShortcutHelper& operator=(const QKKeyboardShortcutHelper&) = delete;

  UserDefaultsHelper defaults;
  QKKeyboardShortcutHelperDelegate* delegate;
  platform::NSStatusItem* menuBarItem;
  MenuHelperDelegate* menuDelegate;
  platform::NSPopover* popover;

  bool didPressCommand = false;
  bool didPressControl = false;
  bool didPressOption = false;
  bool didPressShift = false;
  bool didPressEnter = false;
  bool didPressEsc = false;
  bool didPress1 = false;
  bool didPress2 = false;
  bool didPress3 = false;
  bool didPress4 = false;
  bool didPressComma = false;
  bool didPressA = false;
  bool didPressB = false;
  bool didPressD = false;
  bool didPressF = false;
  bool didPressG = false;
  bool didPressH = false;
  bool didPressJ = false;
  bool didPressM = false;
  bool didPressO = false;
  bool didPressP = false;
  bool didPressQ = false;
  bool didPressR = false;
  bool didPressS = false;
  bool didPressT = false;
  bool didPressLeftBracket = false;
  bool didPressRightBracket = false;
  bool didPressZero = false;
  bool didPressPlus = false;
  bool didPressMinus = false;
  bool didPressUp = false;
  bool didPressDown = false;
  bool didPressLeft = false;
  bool didPressRight = false;
  bool didPressPgUp = false;
  bool didPressPgDn = false;

  /// Copies the event's modifiers into the flags, and hands the event on.
  platform::NSEvent modifierKey(const platform::NSEvent& event);
  void resetKeyPressBools();
  void modifierKeyBools();
  void hidePopover();

  bool isCommandOnly() const;
  bool isCommandShiftCombo() const;
  bool isCommandOptionCombo() const;
  bool isCommandControlCombo() const;
  /// Command alone, while there are additional views.
  bool isEasterEggView() const;
  /// Command and Control, while there are additional views.
  bool isSideBar() const;

  /// Offer an edit action to what has the keyboard; true if it was taken.
  bool isCutCopyPaste(const platform::NSEvent& event);
  bool isUndoRedo(const platform::NSEvent& event) const;

 private:
  enum class Recorded { goOn, consumed, passedOn };

  bool keyDown(const platform::NSEvent& event);
  void keyUp(const platform::NSEvent& event);
  Recorded record(const platform::NSEvent& event);
  bool runCombination();

  std::vector<platform::Connection> monitors_;
};

}  // namespace velkin
