#pragma once

#include "MarkdownEngine/Modifier.h"

#include <array>
#include <utility>
#include <vector>

namespace markdown {

/// Modifiers by target, each target's in the order of their insertion.
class ModifierCollection {
 public:
  ModifierCollection() = default;
  explicit ModifierCollection(std::vector<Modifier> modifiers) {
    for (auto& modifier : modifiers) insert(std::move(modifier));
  }

  void insert(Modifier modifier) {
    modifiers_[static_cast<std::size_t>(modifier.target)].push_back(std::move(modifier));
    isEmpty_ = false;
  }

  [[nodiscard]] bool isEmpty() const noexcept { return isEmpty_; }

  /// Calls `apply` with each modifier of the target, in order.
  template <typename Apply>
  void applyModifiers(Modifier::Target target, Apply&& apply) const {
    for (const Modifier& modifier : modifiers_[static_cast<std::size_t>(target)]) apply(modifier);
  }

 private:
  std::array<std::vector<Modifier>, Modifier::targetCount> modifiers_;
  bool isEmpty_ = true;
};

}  // namespace markdown
