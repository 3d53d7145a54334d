#pragma once

#include "Platform/Alive.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkStyle.h"
#include "Platform/View/ViewRenderer.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

/// The element's content, which is of the kind that is asked for.
template <class Content>
const Content& contentOf(const Element& element) {
  return std::get<Content>(element.content);
}

/// A widget that stands for one element. Kinds derive from it and fill in their content. Main thread.
class GtkRenderedView : public RenderedView {
 public:
  ~GtkRenderedView() override;
  GtkRenderedView(const GtkRenderedView&) = delete;
  GtkRenderedView& operator=(const GtkRenderedView&) = delete;

  /// What stands in the parent.
  GtkWidget* widget() const noexcept { return widget_.get(); }

  void update(const Element& element) final;
  void setChildren(std::span<RenderedView* const> children) override;

  /// Where the parent's free space goes: fills what expands, puts all else as `alignment` says.
  void align(Axis axis, Alignment alignment);

 protected:
  /// Takes over `widget`, floating or not.
  explicit GtkRenderedView(GtkWidget* widget);

  /// Brings the widget to the element's content. The content is of the kind that this was made for.
  virtual void updateContent(const Element& element) = 0;
  const Element& element() const noexcept { return element_; }
  /// What has the keyboard when this view has it.
  virtual GtkWidget* focusWidget() const { return widget_.get(); }
  /// True while a change comes from us and is no news to anybody.
  bool isUpdating() const noexcept { return isUpdating_; }

 private:
  void applyModifiers();
  void applyTooltip(const std::string& text);
  void applyFrame(const Modifiers& modifiers);
  void applyFocus();
  void applyRole();
  void applyName();
  void applyPlace();
  void ensureGestures();
  void ensurePress();
  void keyPressed(GdkEvent* event);
  void setIsDown(bool isDown);
  void addController(GtkWidget* owner, GtkEventController* controller);

  GObjectPtr<GtkWidget> widget_;
  Element element_;
  GtkStyle style_;
  bool isUpdating_ = false;
  bool hasTap_ = false;
  bool hasHover_ = false;
  bool hasPress_ = false;
  bool isDown_ = false;
  bool followsFocus_ = false;
  /// The last news that a view of news has told.
  std::string told_;
  /// What calls on this object, and the widgets that it belongs to.
  std::vector<std::pair<GObjectPtr<GtkWidget>, GtkEventController*>> controllers_;
  Alive isAlive_;
};

/// Puts exactly `wanted` into the container, in this order, moving only what is elsewhere.
/// `insertAfter(child, sibling)` places a child behind a sibling, first for nullptr.
void arrangeChildren(GtkWidget* container, std::span<GtkWidget* const> wanted,
                     void (*insertAfter)(GtkWidget* container, GtkWidget* child, GtkWidget* sibling),
                     void (*remove)(GtkWidget* container, GtkWidget* child));

/// The rendered views' widgets.
std::vector<GtkWidget*> widgetsOf(std::span<RenderedView* const> views);

}  // namespace platform
