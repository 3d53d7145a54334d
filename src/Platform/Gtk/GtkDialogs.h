#pragma once

#include "Platform/Alive.h"
#include "Platform/Dialogs.h"

#include <functional>
#include <memory>
#include <string>

#include <gtk/gtk.h>

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
  ~GtkDialogs() override;
  GtkDialogs(const GtkDialogs&) = delete;
  GtkDialogs& operator=(const GtkDialogs&) = delete;

  void show(const NSAlert& alert, const NSView* view, NSAlert::Completion completion) override;
  void show(const NSSavePanel& panel, const NSView* view, NSSavePanel::Completion completion) override;
  void show(const NSOpenPanel& panel, const NSView* view, NSOpenPanel::Completion completion) override;

 private:
  std::string folderFor(const std::string& use) const;
  void rememberFolder(const std::string& use, const std::string& path) const;
  void askToReplace(const NSView* view, NSSavePanel::Choice choice, NSSavePanel::Completion completion);

  /// The window at which a dialogue is to stand; nullptr for none.
  GtkWindow* windowFor(const NSView* view);
  void standAt(GtkWindow* window);

  Surroundings surroundings_;
  /// At which the last dialogue stood; nullptr once it is gone.
  GtkWindow* window_ = nullptr;
  Alive isAlive_;
};

}  // namespace platform
