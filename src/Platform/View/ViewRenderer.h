#pragma once

#include "Platform/View/View.h"

#include <memory>
#include <span>
#include <vector>

namespace platform {

/// What a platform keeps for one element that has something to show: a widget, or a record of one.
class RenderedView {
 public:
  virtual ~RenderedView() = default;
  /// Takes over the element's present content and modifiers; its kind is the one that it was made with.
  virtual void update(const Element& element) = 0;
  /// The rendered views inside, in their order. Those that were there before stay what they are.
  virtual void setChildren(std::span<RenderedView* const> children) = 0;
  /// What a grid gets in the place of children. nullptr is an empty cell.
  using Row = std::vector<RenderedView*>;
  virtual void setRows(std::span<const Row> rows);
};

/// Makes the platform's counterparts of elements. Main thread.
class ViewRenderer {
 public:
  virtual ~ViewRenderer() = default;
  virtual std::unique_ptr<RenderedView> render(const Element& element) = 0;
  /// What the whole description comes down to.
  virtual void setRoot(std::span<RenderedView* const> views) = 0;
};

}  // namespace platform
