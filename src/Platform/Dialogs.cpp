#include "Platform/Dialogs.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

void NSAlert::beginSheetModal(const NSView* view, Completion completion) const {
  Platform::current().dialogs().show(*this, view, std::move(completion));
}

std::size_t NSAlert::cancelButton() const noexcept {
  const auto found = std::find_if(buttons.begin(), buttons.end(),
                                  [](const Button& button) { return button.role == Button::Role::cancel; });
  if (found != buttons.end()) return static_cast<std::size_t>(found - buttons.begin());
  return buttons.empty() ? 0 : buttons.size() - 1;
}

void NSSavePanel::beginSheetModal(const NSView* view, Completion completion) const {
  Platform::current().dialogs().show(*this, view, std::move(completion));
}

std::string NSSavePanel::withExtension(const std::string& path, std::size_t fileType) const {
  if (fileType >= allowedFileTypes.size()) return path;
  const bool hasOne =
      std::any_of(allowedFileTypes.begin(), allowedFileTypes.end(), [&](const NSFileType& type) {
        return !type.extension.empty() && path.ends_with("." + type.extension);
      });
  const auto& extension = allowedFileTypes[fileType].extension;
  return hasOne || extension.empty() ? path : path + "." + extension;
}

void NSOpenPanel::beginSheetModal(const NSView* view, Completion completion) const {
  Platform::current().dialogs().show(*this, view, std::move(completion));
}

}  // namespace platform
