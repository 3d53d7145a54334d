#pragma once

#include "Platform/Gtk/GtkHostingView.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/NSHostingController.h"
#include "Platform/WKWebView.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

namespace platform {

/// A real window, and ways to look into it.
class GtkFixture : public testing::Test {
 protected:
  ~GtkFixture() override {
    if (window != nullptr) {
      gtk_window_set_child(window, nullptr);
      gtk_window_destroy(window);
    }
    turn();
  }

  /// Runs the main loop until nothing is left to do at once.
  static void turn() {
    while (g_main_context_pending(nullptr)) g_main_context_iteration(nullptr, FALSE);
  }

  /// Runs the main loop until `condition` holds; false if it doesn't come to hold.
  static bool wait(const std::function<bool()>& condition) {
    constexpr int mostTurns = 1500;
    for (int i = 0; i < mostTurns; ++i) {
      if (condition()) return true;
      bool isOver = false;
      g_timeout_add(
          10,
          [](gpointer over) -> gboolean {
            *static_cast<bool*>(over) = true;
            return G_SOURCE_REMOVE;
          },
          &isOver);
      while (!isOver) g_main_context_iteration(nullptr, TRUE);
    }
    return condition();
  }

  /// The value of a script in the page, as JSON text.
  static std::string evaluateIn(WKWebView& page, const std::string& script) {
    std::optional<std::string> result;
    page.evaluateJavaScript(script, [&](const auto& json, const auto& error) {
      result = error ? "error: " + error->localizedDescription : *json;
    });
    EXPECT_TRUE(wait([&] { return result.has_value(); }));
    return result.value_or("nothing");
  }

  /// Shows the view in a window of this size and returns when it is laid out.
  void show(GtkWidget* content, int width = 400, int height = 300) {
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_default_size(window, width, height);
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_widget_set_hexpand(content, TRUE);
    gtk_widget_set_vexpand(content, TRUE);
    gtk_box_append(GTK_BOX(box), content);
    gtk_window_set_child(window, box);
    gtk_window_present(window);
    ASSERT_TRUE(wait([&] { return gtk_widget_get_width(content) > 0; }));
  }

  /// Every widget of this type below `root`, in order.
  static std::vector<GtkWidget*> all(GtkWidget* root, GType type) {
    std::vector<GtkWidget*> found;
    if (g_type_is_a(G_OBJECT_TYPE(root), type)) found.push_back(root);
    for (GtkWidget* child = gtk_widget_get_first_child(root); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
      for (auto* widget : all(child, type)) found.push_back(widget);
    }
    return found;
  }

  static std::vector<std::string> labels(GtkWidget* root) {
    std::vector<std::string> texts;
    for (auto* label : all(root, GTK_TYPE_LABEL)) texts.emplace_back(gtk_label_get_text(GTK_LABEL(label)));
    return texts;
  }

  /// The widget's rectangle in the coordinates of `root`.
  static GdkRectangle boundsIn(GtkWidget* widget, GtkWidget* root) {
    graphene_rect_t bounds;
    if (!gtk_widget_compute_bounds(widget, root, &bounds)) return {};
    return {static_cast<int>(bounds.origin.x), static_cast<int>(bounds.origin.y),
            static_cast<int>(bounds.size.width), static_cast<int>(bounds.size.height)};
  }

  GtkWindow* window = nullptr;
};

}  // namespace platform
