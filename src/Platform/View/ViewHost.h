#pragma once

#include "Platform/View/ViewRenderer.h"

#include <memory>
#include <vector>

namespace platform {

/// Brings a description on show and keeps it true: builds a view again when what it observes changes,
/// compares by position and kind with what stands there, and has the renderer change only what differs. Main
/// thread; changes of state may come from any thread and are taken up together in one later turn of the main
/// loop.
class ViewHost {
 public:
  ViewHost(View root, std::unique_ptr<ViewRenderer> renderer);
  ~ViewHost();
  ViewHost(const ViewHost&) = delete;
  ViewHost& operator=(const ViewHost&) = delete;

  ViewRenderer& renderer() const noexcept { return *renderer_; }

  /// Takes up changes now, rather than in a later turn of the main loop.
  void updateIfNeeded();

 private:
  struct Node;
  struct Invalidation;

  std::unique_ptr<Node> mount(View view, Node* parent);
  void reconcile(std::unique_ptr<Node>& node, View view, Node* parent);
  void reconcileChildren(Node& node);
  void observe(Node& node);
  void unmount(Node& node);
  void rebuildDirty(Node& node);
  void arrange(Node& node);
  void arrangeAround(Node* node);
  static Views childrenOf(const Element& element);
  static void collect(const Node& node, std::vector<RenderedView*>& into);
  static void collectRows(const Node& node, std::vector<RenderedView::Row>& rows);

  std::unique_ptr<ViewRenderer> renderer_;
  std::shared_ptr<Invalidation> invalidation_;
  std::unique_ptr<Node> root_;
};

}  // namespace platform
