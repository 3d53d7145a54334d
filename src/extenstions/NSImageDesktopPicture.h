#pragma once

#include "Platform/NSImage.h"

namespace velkin {

/// The picture that the user has on the desktop: that of the main screen, else that of the first one, else
/// the program's own in the colouring that the desktop has. `completion` gets a picture in any case, in a
/// later turn of the main loop. Main thread.
void desktopPicture(platform::NSSize ofSize, platform::NSImage::Completion completion);

}  // namespace velkin
