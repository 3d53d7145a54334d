#pragma once

#include <functional>
#include <memory>

#include <gtk/gtk.h>

namespace platform {

/// Offers an edit action ("copy:", "deleteBackward:") to what has the keyboard: to the focused widget of the
/// window whose key is being handled, else of the window on the screen that has the keyboard. True if it was
/// taken. Main thread.
bool sendEditAction(const char* selector);

/// True if what has the keyboard is a text that can be edited, of a widget or of a page.
bool isTextFocused();

/// The window whose key is being handled, else the one on the screen that has the keyboard; nullptr if none
/// has. The toolkit calls a window active that was hidden while it was, and one that comes back without the
/// keyboard: where several are called so, the window manager knows. Main thread.
GtkWindow* windowWithKeyboard();

/// Names the window whose key event is being handled for as long as it lives: only that one is sure to have
/// the keyboard.
class KeyEventScope {
 public:
  explicit KeyEventScope(GtkWindow* window);
  ~KeyEventScope();
  KeyEventScope(const KeyEventScope&) = delete;
  KeyEventScope& operator=(const KeyEventScope&) = delete;

 private:
  GtkWindow* earlier_;
};

/// A key that goes on to the page of a web view: the actions behind it wait until the page has seen it.
void noteKeyToPage(GtkWidget* view);

/// What keys and edit actions that were sent still hold up. A page carries them out in a process of its own,
/// and what it copies reaches the clipboard some time later; a page that doesn't answer is waited for two
/// seconds at the most.
enum class EditOrder {
  free,
  /// The next edit action has to wait.
  nextActionWaits,
  /// Any key has to wait: a paste is on its way into a text field.
  everyKeyWaits,
};
EditOrder editOrder();

/// All keys wait until all copies of the result are gone, as they do for a paste.
std::shared_ptr<void> holdAllKeys();

/// Runs work in the turn in which `editOrder` becomes free again, or at once if it is.
void whenEditActionsAreDone(std::function<void()> work);

}  // namespace platform
