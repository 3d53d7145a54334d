#pragma once

#include "Platform/NSImage.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"

#include <memory>

namespace velkin {

/// The user's desktop as a miniature, with the window on it. Points.
struct DesktopUIView {
  double desktopViewWidth = previewSize(AppearanceWidth::full) + 4;
  double desktopViewHeight = previewSize(AppearanceHeight::full) + 4;
  AppearanceWidth selectedWidth = AppearanceWidth::medium;
  AppearanceHeight selectedHeight = AppearanceHeight::medium;
  /// Empty until it is read.
  platform::State<std::shared_ptr<platform::NSImage>> picture{nullptr};

  platform::View body() const;
};

/// A miniature of the window. Points.
struct PreviewUIView {
  double width = 0;
  double height = 0;
  double iconSizeSmall = 3;
  double iconSize = 6;
  double iconPadding = 2;

  platform::View body() const;
};

}  // namespace velkin
