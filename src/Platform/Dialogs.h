#pragma once

#include "Platform/NSAlert.h"
#include "Platform/NSSavePanel.h"

namespace platform {

/// What shows alerts and panels on a desktop. Main thread.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual void show(const NSAlert& alert, const NSView* view, NSAlert::Completion completion) = 0;
  virtual void show(const NSSavePanel& panel, const NSView* view, NSSavePanel::Completion completion) = 0;
  virtual void show(const NSOpenPanel& panel, const NSView* view, NSOpenPanel::Completion completion) = 0;
};

}  // namespace platform
