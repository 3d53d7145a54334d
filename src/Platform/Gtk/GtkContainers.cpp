#include "Platform/Gtk/GtkContainers.h"

#include "Platform/Alive.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkRenderedView.h"
#include "Platform/Gtk/GtkStyle.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/Gtk/KeyboardPlaces.h"
#include "Platform/NSView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

void insertIntoBox(GtkWidget* box, GtkWidget* child, GtkWidget* sibling) {
  if (gtk_widget_get_parent(child) == box) {
    gtk_box_reorder_child_after(GTK_BOX(box), child, sibling);
  } else {
    gtk_box_insert_child_after(GTK_BOX(box), child, sibling);
  }
}

void removeFromBox(GtkWidget* box, GtkWidget* child) { gtk_box_remove(GTK_BOX(box), child); }

/// A row or a column.
class StackView : public GtkRenderedView {
 public:
  explicit StackView(const Element& element)
      : GtkRenderedView(gtk_box_new(orientation(contentOf<StackContent>(element).axis), 0)) {
    update(element);
  }

  void setChildren(std::span<RenderedView* const> children) override {
    const auto& content = contentOf<StackContent>(element());
    for (auto* child : children) static_cast<GtkRenderedView*>(child)->align(content.axis, content.alignment);
    arrangeChildren(widget(), widgetsOf(children), insertIntoBox, removeFromBox);
  }

 protected:
  void updateContent(const Element& element) override {
    const auto& content = contentOf<StackContent>(element);
    gtk_orientable_set_orientation(GTK_ORIENTABLE(widget()), orientation(content.axis));
    gtk_box_set_spacing(GTK_BOX(widget()), static_cast<int>(std::lround(content.spacing)));
  }

 private:
  static GtkOrientation orientation(Axis axis) {
    return axis == Axis::horizontal ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL;
  }
};

/// Views on top of one another; the first one gives the size.
class LayersView : public GtkRenderedView {
 public:
  explicit LayersView(const Element& element) : GtkRenderedView(gtk_overlay_new()) { update(element); }

  void setChildren(std::span<RenderedView* const> children) override {
    const auto wanted = widgetsOf(children);
    auto* overlay = GTK_OVERLAY(widget());
    for (auto* child : children) static_cast<GtkRenderedView*>(child)->align(Axis::depth, Alignment::center);
    for (GtkWidget* child = gtk_widget_get_first_child(widget()); child != nullptr;) {
      GtkWidget* next = gtk_widget_get_next_sibling(child);
      const auto place = std::find(wanted.begin(), wanted.end(), child);
      const bool isBase = gtk_overlay_get_child(overlay) == child;
      if (isBase && place != wanted.begin()) {
        gtk_overlay_set_child(overlay, nullptr);
      } else if (!isBase && (place == wanted.end() || place == wanted.begin())) {
        gtk_overlay_remove_overlay(overlay, child);
      }
      child = next;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (gtk_widget_get_parent(wanted[i]) == widget()) continue;
      if (i == 0) {
        gtk_overlay_set_child(overlay, wanted[i]);
      } else {
        gtk_overlay_add_overlay(overlay, wanted[i]);
      }
    }
  }

 protected:
  void updateContent(const Element&) override {}
};

class GridView : public GtkRenderedView {
 public:
  explicit GridView(const Element& element) : GtkRenderedView(gtk_grid_new()) { update(element); }

  void setRows(std::span<const Row> rows) override {
    std::vector<GtkWidget*> wanted;
    for (const auto& row : rows) {
      for (auto* cell : row) {
        if (cell != nullptr) wanted.push_back(static_cast<GtkRenderedView*>(cell)->widget());
      }
    }
    // In the order of the rows, which is the order for assistive tools. What stays is never without its grid:
    // it would lose the keyboard.
    arrangeChildren(
        widget(), wanted,
        [](GtkWidget* grid, GtkWidget* child, GtkWidget* sibling) {
          if (gtk_widget_get_parent(child) != grid) gtk_grid_attach(GTK_GRID(grid), child, 0, 0, 1, 1);
          gtk_widget_insert_after(child, grid, sibling);
        },
        [](GtkWidget* grid, GtkWidget* child) { gtk_grid_remove(GTK_GRID(grid), child); });
    auto* layout = gtk_widget_get_layout_manager(widget());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t column = 0; column < rows[row].size(); ++column) {
        if (rows[row][column] == nullptr) continue;
        auto* cell = static_cast<GtkRenderedView*>(rows[row][column])->widget();
        auto* place = GTK_GRID_LAYOUT_CHILD(gtk_layout_manager_get_layout_child(layout, cell));
        gtk_grid_layout_child_set_row(place, static_cast<int>(row));
        gtk_grid_layout_child_set_column(place, static_cast<int>(column));
      }
    }
  }
  void setChildren(std::span<RenderedView* const>) override {}

 protected:
  void updateContent(const Element& element) override {
    const auto& content = contentOf<GridContent>(element);
    gtk_grid_set_row_spacing(GTK_GRID(widget()), static_cast<guint>(std::lround(content.rowSpacing)));
    gtk_grid_set_column_spacing(GTK_GRID(widget()), static_cast<guint>(std::lround(content.columnSpacing)));
  }
};

class ScrollAreaView : public GtkRenderedView {
 public:
  explicit ScrollAreaView(const Element& element) : GtkRenderedView(gtk_scrolled_window_new()) {
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(widget()), TRUE);
    holder_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(widget()), holder_);
    update(element);
  }

  void setChildren(std::span<RenderedView* const> children) override {
    const auto axis = contentOf<ScrollContent>(element()).axis;
    for (auto* child : children) static_cast<GtkRenderedView*>(child)->align(axis, Alignment::fill);
    arrangeChildren(holder_, widgetsOf(children), insertIntoBox, removeFromBox);
  }

 protected:
  void updateContent(const Element& element) override {
    const bool isRow = contentOf<ScrollContent>(element).axis == Axis::horizontal;
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(widget()),
                                   isRow ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER,
                                   isRow ? GTK_POLICY_NEVER : GTK_POLICY_AUTOMATIC);
    gtk_orientable_set_orientation(GTK_ORIENTABLE(holder_),
                                   isRow ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL);
    // A row takes the width that there is: with its own it would push its neighbours away before it scrolls.
    gtk_scrolled_window_set_propagate_natural_width(GTK_SCROLLED_WINDOW(widget()), !isRow);
    gtk_widget_set_vexpand(widget(), !isRow);
    if (isRow) gtk_widget_add_css_class(widget(), "velkin-row");
  }

 private:
  GtkWidget* holder_;
};

/// A widget that may be gone.
class WeakWidget {
 public:
  WeakWidget() { g_weak_ref_init(&reference_, nullptr); }
  ~WeakWidget() { g_weak_ref_clear(&reference_); }
  WeakWidget(const WeakWidget&) = delete;
  WeakWidget& operator=(const WeakWidget&) = delete;

  void set(GtkWidget* widget) { g_weak_ref_set(&reference_, widget); }
  /// Alive for as long as nothing of the toolkit runs.
  GtkWidget* get() {
    return GObjectPtr<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&reference_))).get();
  }

 private:
  GWeakRef reference_;
};

/// A view with a bubble that points at it.
class BubbleView : public GtkRenderedView {
 public:
  explicit BubbleView(const Element& element) : GtkRenderedView(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)) {
    bubble_ = GObjectPtr<GtkWidget>::retain(gtk_popover_new());
    // What expands in it doesn't expand what it points at, beside which it stands.
    gtk_widget_set_hexpand(bubble_.get(), FALSE);
    gtk_widget_set_vexpand(bubble_.get(), FALSE);
    gtk_widget_set_halign(bubble_.get(), GTK_ALIGN_START);
    squareWhereNotComposed(bubble_.get());
    holder_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_popover_set_child(GTK_POPOVER(bubble_.get()), holder_);
    gtk_widget_set_parent(bubble_.get(), widget());
    g_signal_connect_swapped(bubble_.get(), "closed", G_CALLBACK(+[](BubbleView* self) {
                               // The window takes it away from the bubble after this.
                               DispatchQueue::main().async([self, alive = self->isAlive_.watch()] {
                                 if (alive) self->giveBackTheKeyboard();
                               });
                               if (!self->isUpdating()) {
                                 contentOf<PopoverContent>(self->element()).isPresented.set(false);
                               }
                             }),
                             this);
    update(element);
  }
  ~BubbleView() override {
    g_signal_handlers_disconnect_by_data(bubble_.get(), this);
    gtk_widget_unparent(bubble_.get());
  }

  void setChildren(std::span<RenderedView* const> children) override {
    if (children.empty()) return;
    const auto wanted = widgetsOf(children);
    static_cast<GtkRenderedView*>(children.front())->align(Axis::vertical, Alignment::fill);
    if (gtk_widget_get_parent(wanted.front()) != widget()) {
      gtk_box_insert_child_after(GTK_BOX(widget()), wanted.front(), nullptr);
    }
    arrangeChildren(holder_, std::span(wanted).subspan(1), insertIntoBox, removeFromBox);
    const bool isPresented = contentOf<PopoverContent>(element()).isPresented.get() && children.size() > 1;
    if (isPresented) {
      rememberTheKeyboard();
      gtk_popover_popup(GTK_POPOVER(bubble_.get()));
    } else {
      gtk_popover_popdown(GTK_POPOVER(bubble_.get()));
    }
  }

 protected:
  void updateContent(const Element&) override {}

 private:
  void rememberTheKeyboard() {
    auto* root = gtk_widget_get_root(widget());
    if (gtk_widget_get_visible(bubble_.get()) || root == nullptr) return;
    hadKeyboard_.set(gtk_root_get_focus(root));
  }

  /// To what had it before: a text that is being written is gone on with when the bubble closes.
  void giveBackTheKeyboard() {
    auto* had = hadKeyboard_.get();
    hadKeyboard_.set(nullptr);
    auto* root = gtk_widget_get_root(widget());
    if (had == nullptr || root == nullptr || gtk_widget_get_root(had) != root) return;
    auto* has = gtk_root_get_focus(root);
    // The toolkit gives it to what the bubble points at.
    const bool isLeftOver = has == nullptr || gtk_widget_is_ancestor(has, widget());
    if (isLeftOver) gtk_widget_grab_focus(had);
  }

  GObjectPtr<GtkWidget> bubble_;
  GtkWidget* holder_;
  WeakWidget hadKeyboard_;
  Alive isAlive_;
};

/// The place of a platform view, which may leave for another place at any time.
class HostedPlace : public GtkRenderedView {
 public:
  explicit HostedPlace(const Element& element)
      : GtkRenderedView(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)),
        view_(contentOf<HostedContent>(element).makeNSView()) {
    gtk_widget_set_hexpand(widget(), TRUE);
    gtk_widget_set_vexpand(widget(), TRUE);
    if (auto* hosted = dynamic_cast<GtkViewBase*>(view_)) {
      guest_ = GObjectPtr<GtkWidget>::retain(hosted->widget());
      if (GtkWidget* parent = gtk_widget_get_parent(guest_.get())) {
        keyboardMayLeave(guest_.get());
        gtk_box_remove(GTK_BOX(parent), guest_.get());
      }
      markAsPane(widget());
      gtk_widget_set_hexpand(guest_.get(), TRUE);
      gtk_widget_set_vexpand(guest_.get(), TRUE);
      gtk_box_append(GTK_BOX(widget()), guest_.get());
    }
    update(element);
  }
  ~HostedPlace() override {
    if (!guest_) return;
    if (gtk_widget_get_parent(guest_.get()) == widget()) {
      keyboardMayLeave(guest_.get());
      gtk_box_remove(GTK_BOX(widget()), guest_.get());
    }
  }

 protected:
  void updateContent(const Element& element) override {
    contentOf<HostedContent>(element).updateNSView(*view_);
  }

 private:
  NSView* view_;
  GObjectPtr<GtkWidget> guest_;
};

}  // namespace

using Rendered = std::unique_ptr<GtkRenderedView>;

Rendered renderKind(const StackContent& stack, const Element& element) {
  if (stack.axis == Axis::depth) return std::make_unique<LayersView>(element);
  return std::make_unique<StackView>(element);
}

Rendered renderKind(const GridContent&, const Element& element) {
  return std::make_unique<GridView>(element);
}

Rendered renderKind(const ScrollContent&, const Element& element) {
  return std::make_unique<ScrollAreaView>(element);
}

Rendered renderKind(const PopoverContent&, const Element& element) {
  return std::make_unique<BubbleView>(element);
}

Rendered renderKind(const HostedContent&, const Element& element) {
  return std::make_unique<HostedPlace>(element);
}

}  // namespace platform
