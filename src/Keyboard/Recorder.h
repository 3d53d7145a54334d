#pragma once

#include "Keyboard/RecorderCocoa.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <memory>
#include <string>

namespace velkin::KeyboardShortcuts {

/// A recorder among the described views, with a label before it if it has a title. On a desktop that hands
/// out the keys itself it shows what the desktop gave, and records nothing.
struct Recorder {
  explicit Recorder(const Name& shortcutName, RecorderCocoa::OnChange changed = {})
      : Recorder(std::string(), shortcutName, std::move(changed)) {}
  Recorder(std::string label, const Name& shortcutName, RecorderCocoa::OnChange changed = {});

  std::string title;
  Name name;
  platform::State<std::shared_ptr<RecorderCocoa>> control;
  /// Counts the control's changes.
  platform::State<int> changes{0};
  platform::State<bool> hasKeyboard{false};

  platform::View body() const;

 private:
  platform::View field() const;
  platform::View hint() const;
};

}  // namespace velkin::KeyboardShortcuts
