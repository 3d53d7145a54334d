#include "Platform/Gtk/GtkHostingView.h"

#include "Platform/FatalError.h"
#include "Platform/Gtk/GtkContainers.h"
#include "Platform/Gtk/GtkControls.h"
#include "Platform/Gtk/GtkRenderedView.h"
#include "Platform/Gtk/KeyboardPlaces.h"

#include <utility>

namespace platform {

namespace {

[[noreturn]] std::unique_ptr<GtkRenderedView> hasNoWidget() {
  fatalError("A kind of view that has no widget came to be rendered");
}

// What the host takes apart before anything is rendered.
std::unique_ptr<GtkRenderedView> renderKind(const EmptyContent&, const Element&) { return hasNoWidget(); }
std::unique_ptr<GtkRenderedView> renderKind(const GroupContent&, const Element&) { return hasNoWidget(); }
std::unique_ptr<GtkRenderedView> renderKind(const ForEachContent&, const Element&) { return hasNoWidget(); }
std::unique_ptr<GtkRenderedView> renderKind(const CompositeContent&, const Element&) { return hasNoWidget(); }

class GtkViewRenderer : public ViewRenderer {
 public:
  explicit GtkViewRenderer(GtkWidget* root) : root_(root) {}

  std::unique_ptr<RenderedView> render(const Element& element) override {
    // A kind that none of the functions takes doesn't compile.
    return std::visit([&](const auto& content) { return renderKind(content, element); }, element.content);
  }

  void setRoot(std::span<RenderedView* const> views) override {
    for (auto* view : views) static_cast<GtkRenderedView*>(view)->align(Axis::depth, Alignment::fill);
    arrangeChildren(
        root_, widgetsOf(views),
        [](GtkWidget* box, GtkWidget* child, GtkWidget* sibling) {
          if (gtk_widget_get_parent(child) == box) {
            gtk_box_reorder_child_after(GTK_BOX(box), child, sibling);
          } else {
            gtk_box_insert_child_after(GTK_BOX(box), child, sibling);
          }
        },
        [](GtkWidget* box, GtkWidget* child) { gtk_box_remove(GTK_BOX(box), child); });
  }

 private:
  GtkWidget* root_;
};

}  // namespace

GtkHostingView::GtkHostingView(View root)
    : root_(GObjectPtr<GtkWidget>::retain(gtk_overlay_new())),
      content_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)) {
  gtk_overlay_set_child(GTK_OVERLAY(root_.get()), content_);
  host_ = std::make_unique<ViewHost>(std::move(root), std::make_unique<GtkViewRenderer>(content_));
}

GtkHostingView::~GtkHostingView() {
  host_.reset();
  GtkWidget* parent = gtk_widget_get_parent(root_.get());
  if (parent != nullptr && GTK_IS_BOX(parent)) gtk_box_remove(GTK_BOX(parent), root_.get());
  if (parent != nullptr && GTK_IS_OVERLAY(parent))
    gtk_overlay_remove_overlay(GTK_OVERLAY(parent), root_.get());
}

NSRect GtkHostingView::frame() const {
  GtkRequisition natural;
  gtk_widget_get_preferred_size(root_.get(), nullptr, &natural);
  const int width = gtk_widget_get_width(root_.get());
  const int height = gtk_widget_get_height(root_.get());
  return {{0, 0},
          {static_cast<double>(width > 0 ? width : natural.width),
           static_cast<double>(height > 0 ? height : natural.height)}};
}

void GtkHostingView::addSubview(NSView& view, std::optional<NSSize> size) {
  auto* guest = dynamic_cast<GtkViewBase*>(&view);
  if (guest == nullptr) return;
  GtkWidget* widget = guest->widget();
  if (size) {
    gtk_widget_set_halign(widget, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(widget, GTK_ALIGN_CENTER);
    gtk_widget_set_size_request(widget, static_cast<int>(size->width), static_cast<int>(size->height));
    // It shows something; the pointer is for what is below.
    gtk_widget_set_can_target(widget, FALSE);
  }
  gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), widget);
}

void GtkHostingView::removeSubview(NSView& view) {
  auto* guest = dynamic_cast<GtkViewBase*>(&view);
  if (guest == nullptr || gtk_widget_get_parent(guest->widget()) != root_.get()) return;
  gtk_overlay_remove_overlay(GTK_OVERLAY(root_.get()), guest->widget());
}

void GtkHostingView::makeFirstResponder() {
  noteKeyboardClaim();
  gtk_widget_grab_focus(root_.get());
}

}  // namespace platform
