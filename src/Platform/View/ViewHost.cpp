#include "Platform/View/ViewHost.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Platform.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
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
  /// The children's, if they have any.
  std::vector<std::string> keys;
  std::unique_ptr<RenderedView> rendered;
  std::vector<Connection> subscriptions;
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
         !std::holds_alternative<GroupContent>(element.content) &&
         !std::holds_alternative<ForEachContent>(element.content);
}

std::vector<std::string> keysOf(const Element& element) {
  const auto* rows = std::get_if<ForEachContent>(&element.content);
  return rows != nullptr ? rows->keys : std::vector<std::string>();
}

/// For each view that is to stand there now, the place of the one that it goes on from: by key where there
/// are keys, else by position.
std::vector<std::optional<std::size_t>> placesBefore(const std::vector<std::string>& keysBefore,
                                                     const std::vector<std::string>& keysNow,
                                                     std::size_t countBefore, std::size_t countNow) {
  std::vector<std::optional<std::size_t>> places(countNow);
  if (keysNow.empty() && keysBefore.empty()) {
    for (std::size_t i = 0; i < std::min(countNow, countBefore); ++i) places[i] = i;
    return places;
  }
  std::multimap<std::string_view, std::size_t> free;
  for (std::size_t i = 0; i < keysBefore.size(); ++i) free.emplace(keysBefore[i], i);
  for (std::size_t i = 0; i < keysNow.size(); ++i) {
    const auto found = free.lower_bound(keysNow[i]);
    if (found == free.end() || found->first != keysNow[i]) continue;
    places[i] = found->second;
    free.erase(found);
  }
  return places;
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
  if (const auto* button = contentOf<ButtonContent>(now)) {
    // For assistive tools a link is another kind of thing.
    return (button->style == ButtonStyle::link) ==
           (contentOf<ButtonContent>(before)->style == ButtonStyle::link);
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
  node->keys = keysOf(element);
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
  auto keys = keysOf(node.view.element());
  auto before = std::exchange(node.children, {});
  const auto places = placesBefore(node.keys, keys, before.size(), now.size());
  node.keys = std::move(keys);
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (places[i]) {
      node.children.push_back(std::move(before[*places[i]]));
      reconcile(node.children.back(), std::move(now[i]), &node);
    } else {
      node.children.push_back(mount(std::move(now[i]), &node));
    }
  }
  for (const auto& left : before) {
    if (left) unmount(*left);
  }
  // What is left goes after this, when its widgets stand nowhere any more.
  arrange(node);
}

void ViewHost::collect(const Node& node, std::vector<RenderedView*>& into) {
  if (node.rendered) {
    into.push_back(node.rendered.get());
    return;
  }
  for (const auto& child : node.children) collect(*child, into);
}

void ViewHost::collectRows(const Node& node, std::vector<RenderedView::Row>& rows) {
  if (node.rendered) {
    rows.push_back({node.rendered.get()});
  } else if (contentOf<GroupContent>(node.view) != nullptr) {
    auto& row = rows.emplace_back();
    for (const auto& cell : node.children) {
      const auto size = row.size();
      collect(*cell, row);
      if (row.size() == size) row.push_back(nullptr);
    }
  } else {
    for (const auto& child : node.children) collectRows(*child, rows);
  }
}

void RenderedView::setRows(std::span<const Row> rows) {
  Row all;
  for (const auto& row : rows) std::copy_if(row.begin(), row.end(), std::back_inserter(all), std::identity());
  setChildren(all);
}

void ViewHost::arrange(Node& node) {
  if (!node.rendered) return;
  if (contentOf<GridContent>(node.view) != nullptr) {
    std::vector<RenderedView::Row> rows;
    for (const auto& child : node.children) collectRows(*child, rows);
    node.rendered->setRows(rows);
    return;
  }
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
