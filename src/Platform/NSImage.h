#pragma once

#include "Platform/NSView.h"
#include "Platform/View/View.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// A picture at the size at which it is drawn. It stands at one place at a time. Main thread.
class NSImage : public NSView {
 public:
  /// The picture, or nullptr if there is none that can be drawn.
  using Completion = std::function<void(std::shared_ptr<NSImage>)>;

  /// Reads the picture in the file at `path` (absolute) on another thread, scales it until it covers `size`
  /// points and cuts off what is beyond. Of a picture that moves it takes the first moment, of a slide show
  /// the first slide. What is no regular file, or too large to be taken into memory, is no picture.
  /// `completion` runs once, in a later turn of the main loop.
  static void contentsOf(const std::string& path, NSSize size, Completion completion);
  /// The same of an image of the program.
  static void named(const std::string& name, NSSize size, Completion completion);

  void addSubview(NSView&, std::optional<NSSize>) override {}
  void removeSubview(NSView&) override {}
  void makeFirstResponder() override {}
};

/// The place of `image` in a description.
View ImageView(const std::shared_ptr<NSImage>& image);

}  // namespace platform
