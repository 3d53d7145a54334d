#pragma once

#include "Platform/Dialogs.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// The desktop's own dialogues, by its portal where there is one. Main thread.
class GtkDialogs : public Dialogs {
 public:
  struct Surroundings {
    /// Keeps the popover open as long as what it returns lives.
    std::function<std::shared_ptr<const void>()> holdPopover;
    /// Where the folders that were chosen last are remembered.
    std::function<std::string()> foldersFile;
    /// Called before anything is shown.
    std::function<void()> startToolkit;
  };
  explicit GtkDialogs(Surroundings surroundings);

  void show(const NSAlert& alert, const NSView* view, NSAlert::Completion completion) override;
  void show(const NSSavePanel& panel, const NSView* view, NSSavePanel::Completion completion) override;
  void show(const NSOpenPanel& panel, const NSView* view, NSOpenPanel::Completion completion) override;

 private:
  std::string folderFor(const std::string& use) const;
  void rememberFolder(const std::string& use, const std::string& path) const;
  void askToReplace(const NSView* view, NSSavePanel::Choice choice, NSSavePanel::Completion completion);

  Surroundings surroundings_;
  std::shared_ptr<const bool> isAlive_ = std::make_shared<const bool>(true);
};

}  // namespace platform
