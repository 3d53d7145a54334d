#pragma once

#include <functional>

#include <gtk/gtk.h>

namespace platform {

/// Shows every key that goes down or up in `window` to the program's monitors first; a key that one of them
/// keeps reaches no widget and no page. Of the keys that go on, pages get no release: neither that of an
/// ordinary key nor that of a modifier. Main thread.
void watchKeys(GtkWindow* window);

/// True while a press is handled that the keyboard repeats because the key is held down.
bool isKeyRepeating();

/// Runs work in a later turn, once no key is held down in a window of the program.
void whenKeysAreUp(std::function<void()> work);

}  // namespace platform
