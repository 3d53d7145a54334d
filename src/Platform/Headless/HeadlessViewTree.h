#pragma once

#include "Platform/NSHostingController.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// One element as it stands on the screen that isn't there.
class HeadlessView : public RenderedView {
 public:
  explicit HeadlessView(const Element& shown);
  ~HeadlessView() override;

  const Element& element() const noexcept { return element_; }
  const std::vector<HeadlessView*>& children() const noexcept { return children_; }
  /// How often its content was set after it was made.
  int updateCount = 0;
  /// The platform view, if this element hosts one.
  NSView* hosted = nullptr;

  /// All words in it, in order.
  std::string text() const;
  /// As a click on a button, a check box or a view with a tap; nothing happens while it is disabled.
  void press();
  /// As a user's replacing all of a text field's or an editor's text.
  void type(std::string text);
  /// As Return in a text field, or for one that is off and can be woken.
  void commit();
  /// As a key for a text field that is off.
  void wake();
  void select(int option);
  void hover(bool isInside);
  /// As a mouse button that goes down on it, or comes up again.
  void holdDown(bool isDown);
  /// What it is, in a word.
  std::string_view kind() const;
  /// Where it is said to lie, for who asks by a `ViewPlace`.
  std::optional<ViewPlace::InWindow> place;
  bool isEnabled() const;

  void update(const Element& element) override;
  void setChildren(std::span<RenderedView* const> children) override;

 private:
  void applyPlace();

  Element element_;
  HeadlessView* parent_ = nullptr;
  std::vector<HeadlessView*> children_;
};

/// The description as it is on show, for tests to look through and to press.
class HeadlessHostingView : public NSHostingView {
 public:
  explicit HeadlessHostingView(View root);

  ViewHost& host() noexcept override { return *host_; }
  NSRect frame() const override { return {}; }
  void makeFirstResponder() override {}
  void addSubview(NSView& view, std::optional<NSSize> size) override { subviews.emplace_back(&view, size); }
  void removeSubview(NSView& view) override {
    std::erase_if(subviews, [&](const auto& entry) { return entry.first == &view; });
  }

  /// What stands above the described views, and at which size.
  std::vector<std::pair<NSView*, std::optional<NSSize>>> subviews;

  const std::vector<HeadlessView*>& roots() const noexcept;

  /// Every view that `matches`, from the outside in and in order.
  std::vector<HeadlessView*> all(const std::function<bool(const HeadlessView&)>& matches) const;
  template <class Content>
  std::vector<HeadlessView*> all() const {
    return all(
        [](const HeadlessView& view) { return std::holds_alternative<Content>(view.element().content); });
  }
  /// The first button, check box or tappable view with this text, label or tooltip; nullptr if there is none.
  HeadlessView* control(std::string_view name) const;
  /// The first text field with this placeholder or label.
  HeadlessView* field(std::string_view name) const;
  bool showsText(std::string_view text) const;

 private:
  class Renderer;
  Renderer* renderer_;
  std::unique_ptr<ViewHost> host_;
};

/// The tree of a controller's described view.
inline HeadlessHostingView& headlessTree(NSViewController& controller) {
  return dynamic_cast<HeadlessHostingView&>(controller.view());
}

}  // namespace platform
