#include "Platform/View/ViewHost.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Platform.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace platform {

/// Shared with the observers, which may outlive the host by a moment on another thread.
struct ViewHost::Invalidation : std::enable_shared_from_this<Invalidation> {
  explicit Invalidation(ViewHost* viewHost) : host(viewHost) {}

  void request() {
    if (isPending.exchange(true)) return;
    DispatchQueue::main().async([weak = weak_from_this()] {
      const auto self = weak.lock();
      if (!self) return;
      self->isPending = false;
      if (self->host != nullptr) self->host->updateIfNeeded();
    });
  }

  ViewHost* host;
  std::atomic<bool> isPending = false;
};

struct ViewHost::Node {
  View view;
  Node* parent = nullptr;
  std::vector<std::unique_ptr<Node>> children;
  std::unique_ptr<RenderedView> rendered;
  std::vector<Subscription> subscriptions;
  /// Set by observers, on any thread.
  std::shared_ptr<std::atomic<bool>> isDirty;
};

namespace {

template <class Content>
const Content* contentOf(const View& view) {
  return std::get_if<Content>(&view.element().content);
}

bool hasWidget(const Element& element) {
  return !std::holds_alternative<EmptyContent>(element.content) &&
         !std::holds_alternative<CompositeContent>(element.content) &&
         !std::holds_alternative<GroupContent>(element.content);
}

/// True if what stands for `before` can go on standing for `now`.
bool isSameKind(const View& before, const View& now) {
  if (before.element().content.index() != now.element().content.index()) return false;
  if (const auto* composite = contentOf<CompositeContent>(now)) {
    return composite->type == contentOf<CompositeContent>(before)->type;
  }
  if (const auto* hosted = contentOf<HostedContent>(now)) {
    return hosted->identity == contentOf<HostedContent>(before)->identity;
  }
  if (const auto* stack = contentOf<StackContent>(now)) {
    return (stack->axis == Axis::depth) == (contentOf<StackContent>(before)->axis == Axis::depth);
  }
  if (const auto* picker = contentOf<PickerContent>(now)) {
    return picker->style == contentOf<PickerContent>(before)->style;
  }
  return true;
}

void adoptState(const CompositeContent& earlier, const CompositeContent& now) {
  for (std::size_t i = 0; i < now.properties.size() && i < earlier.properties.size(); ++i) {
    now.properties[i]->adopt(*earlier.properties[i]);
  }
}

void runChangeHandlers(const Element& before, const Element& now) {
  const auto& earlier = before.modifiers.onChange;
  const auto& present = now.modifiers.onChange;
  for (std::size_t i = 0; i < present.size() && i < earlier.size(); ++i) {
    if (!present[i].isEqual(earlier[i].value, present[i].value)) present[i].action(present[i].value);
  }
}

}  // namespace

ViewHost::ViewHost(View root, std::unique_ptr<ViewRenderer> renderer)
    : renderer_(std::move(renderer)), invalidation_(std::make_shared<Invalidation>(this)) {
  root_ = mount(std::move(root), nullptr);
  arrangeAround(nullptr);
}

ViewHost::~ViewHost() {
  invalidation_->host = nullptr;
  unmount(*root_);
  renderer_->setRoot({});
}

Views ViewHost::childrenOf(const Element& element) {
  if (const auto* composite = std::get_if<CompositeContent>(&element.content)) return {composite->body()};
  return element.children;
}

std::unique_ptr<ViewHost::Node> ViewHost::mount(View view, Node* parent) {
  auto node = std::make_unique<Node>();
  node->view = std::move(view);
  node->parent = parent;
  observe(*node);
  const auto& element = node->view.element();
  if (hasWidget(element)) node->rendered = renderer_->render(element);
  for (auto& child : childrenOf(element)) node->children.push_back(mount(std::move(child), node.get()));
  arrange(*node);
  if (element.modifiers.onAppear) element.modifiers.onAppear();
  return node;
}

void ViewHost::observe(Node& node) {
  node.subscriptions.clear();
  const auto* composite = contentOf<CompositeContent>(node.view);
  if (composite == nullptr) return;
  node.isDirty = std::make_shared<std::atomic<bool>>(false);
  for (const auto* property : composite->properties) {
    node.subscriptions.push_back(
        property->subscribe([dirty = node.isDirty, weak = std::weak_ptr(invalidation_)] {
          dirty->store(true);
          if (const auto invalidation = weak.lock()) invalidation->request();
        }));
  }
}

void ViewHost::unmount(Node& node) {
  node.subscriptions.clear();
  for (auto& child : node.children) unmount(*child);
  const auto& disappear = node.view.element().modifiers.onDisappear;
  if (disappear) disappear();
}

void ViewHost::reconcile(std::unique_ptr<Node>& node, View view, Node* parent) {
  if (!isSameKind(node->view, view)) {
    // The new one first: a platform view that only changes its place is never without one.
    auto replacement = mount(std::move(view), parent);
    unmount(*node);
    node = std::move(replacement);
    return;
  }
  if (const auto* composite = contentOf<CompositeContent>(view)) {
    adoptState(*contentOf<CompositeContent>(node->view), *composite);
  }
  const View before = std::exchange(node->view, std::move(view));
  if (contentOf<CompositeContent>(node->view) != nullptr) observe(*node);
  if (node->rendered) node->rendered->update(node->view.element());
  reconcileChildren(*node);
  runChangeHandlers(before.element(), node->view.element());
}

void ViewHost::reconcileChildren(Node& node) {
  Views now = childrenOf(node.view.element());
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (i < node.children.size()) {
      reconcile(node.children[i], std::move(now[i]), &node);
    } else {
      node.children.push_back(mount(std::move(now[i]), &node));
    }
  }
  std::vector<std::unique_ptr<Node>> removed;
  while (node.children.size() > now.size()) {
    unmount(*node.children.back());
    removed.push_back(std::move(node.children.back()));
    node.children.pop_back();
  }
  arrange(node);
}

void ViewHost::collect(const Node& node, std::vector<RenderedView*>& into) {
  if (node.rendered) {
    into.push_back(node.rendered.get());
    return;
  }
  for (const auto& child : node.children) collect(*child, into);
}

void ViewHost::arrange(Node& node) {
  if (!node.rendered) return;
  std::vector<RenderedView*> views;
  for (const auto& child : node.children) collect(*child, views);
  node.rendered->setChildren(views);
}

void ViewHost::arrangeAround(Node* node) {
  // All the way up: how a view fills its place depends on what is deep inside it.
  for (; node != nullptr; node = node->parent) arrange(*node);
  std::vector<RenderedView*> views;
  collect(*root_, views);
  renderer_->setRoot(views);
}

void ViewHost::rebuildDirty(Node& node) {
  if (node.isDirty && node.isDirty->exchange(false)) {
    reconcileChildren(node);
    arrangeAround(&node);
    return;
  }
  for (std::size_t i = 0; i < node.children.size(); ++i) rebuildDirty(*node.children[i]);
}

void ViewHost::updateIfNeeded() { rebuildDirty(*root_); }

}  // namespace platform
