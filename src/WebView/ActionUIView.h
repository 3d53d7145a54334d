#pragma once

#include "Platform/View/View.h"

namespace velkin {

enum class ActionCompletionType { left, right, up, down, expand, collapse };

/// A small overlay that stands for a done action.
struct ActionUIView {
  /// Points, each way.
  static constexpr double size = 128;

  ActionCompletionType imageName;

  platform::View body() const;
};

}  // namespace velkin
