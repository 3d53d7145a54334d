#include "Platform/Gtk/GtkHostingView.h"

#include "Platform/FatalError.h"
#include "Platform/Gtk/GtkContainers.h"
#include "Platform/Gtk/GtkControls.h"
#include "Platform/Gtk/GtkRenderedView.h"

#include <utility>

namespace platform {

namespace {

class GtkViewRenderer : public ViewRenderer {
 public:
  explicit GtkViewRenderer(GtkWidget* root) : root_(root) {}

  std::unique_ptr<RenderedView> render(const Element& element) override {
    if (auto container = renderContainer(element)) return container;
    if (auto control = renderControl(element)) return control;
    fatalError("A kind of view has no widget");
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

GtkHostingView::GtkHostingView(View root) : root_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)) {
  g_object_ref_sink(root_);
  host_ = std::make_unique<ViewHost>(std::move(root), std::make_unique<GtkViewRenderer>(root_));
}

GtkHostingView::~GtkHostingView() {
  host_.reset();
  if (GtkWidget* parent = gtk_widget_get_parent(root_); parent != nullptr && GTK_IS_BOX(parent)) {
    gtk_box_remove(GTK_BOX(parent), root_);
  }
  g_object_unref(root_);
}

NSRect GtkHostingView::frame() const {
  GtkRequisition natural;
  gtk_widget_get_preferred_size(root_, nullptr, &natural);
  const int width = gtk_widget_get_width(root_);
  const int height = gtk_widget_get_height(root_);
  return {{0, 0},
          {static_cast<double>(width > 0 ? width : natural.width),
           static_cast<double>(height > 0 ? height : natural.height)}};
}

void GtkHostingView::makeFirstResponder() { gtk_widget_grab_focus(root_); }

}  // namespace platform
