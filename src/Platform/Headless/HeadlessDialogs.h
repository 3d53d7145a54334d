#pragma once

#include "Platform/Dialogs.h"
#include "Platform/DispatchQueue.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Dialogues that a test answers. Each is taken off its list by its answer, which arrives in a later turn.
class HeadlessDialogs : public Dialogs {
 public:
  template <class Asked, class Completion>
  struct Open {
    Asked asked;
    const NSView* view;
    Completion completion;
  };
  std::vector<Open<NSAlert, NSAlert::Completion>> alerts;
  std::vector<Open<NSSavePanel, NSSavePanel::Completion>> savePanels;
  std::vector<Open<NSOpenPanel, NSOpenPanel::Completion>> openPanels;

  void show(const NSAlert& alert, const NSView* view, NSAlert::Completion completion) override {
    alerts.push_back({alert, view, std::move(completion)});
  }
  void show(const NSSavePanel& panel, const NSView* view, NSSavePanel::Completion completion) override {
    savePanels.push_back({panel, view, std::move(completion)});
  }
  void show(const NSOpenPanel& panel, const NSView* view, NSOpenPanel::Completion completion) override {
    openPanels.push_back({panel, view, std::move(completion)});
  }

  /// False if the alert that was opened last has no such button, or there is none.
  bool press(const std::string& button) {
    if (alerts.empty()) return false;
    const auto& buttons = alerts.back().asked.buttons;
    for (std::size_t i = 0; i < buttons.size(); ++i) {
      if (buttons[i].title == button) return answer(alerts, i);
    }
    return buttons.empty() && button == "OK" && answer(alerts, std::size_t{0});
  }
  bool pressEscape() { return !alerts.empty() && answer(alerts, alerts.back().asked.cancelButton()); }
  bool save(std::optional<NSSavePanel::Choice> choice) { return answer(savePanels, std::move(choice)); }
  bool open(std::optional<std::string> path) { return answer(openPanels, std::move(path)); }

 private:
  template <class List, class Answer>
  static bool answer(List& list, Answer value) {
    if (list.empty()) return false;
    auto completion = std::move(list.back().completion);
    list.pop_back();
    DispatchQueue::main().async([completion = std::move(completion), value = std::move(value)] {
      if (completion) completion(value);
    });
    return true;
  }
};

}  // namespace platform
