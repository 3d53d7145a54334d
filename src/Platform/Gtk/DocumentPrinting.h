#pragma once

#include "Platform/NSError.h"
#include "Platform/NSPrintInfo.h"

#include <functional>
#include <optional>
#include <string>

#include <gtk/gtk.h>

namespace platform {

/// As `SystemServices::printDocument`, above `parent` if there is one. It ends with the dialogue; what
/// becomes of the paper then is the desktop's matter.
void showPrintDialogue(const std::string& pdf, const NSPrintInfo& info, GtkWindow* parent,
                       std::function<void(std::optional<NSError>)> ended);

}  // namespace platform
