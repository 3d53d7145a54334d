#include "Platform/Gtk/KeyboardPlaces.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <algorithm>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

namespace {

constexpr const char* paneKey = "velkin-pane";

unsigned claims = 0;
bool isLastTabBackward = false;

bool isIn(GtkWidget* widget, GtkWidget* container) {
  return widget != nullptr && (widget == container || gtk_widget_is_ancestor(widget, container));
}

void addPanes(GtkWidget* widget, std::vector<GtkWidget*>& panes) {
  if (!gtk_widget_get_mapped(widget)) return;
  if (g_object_get_data(G_OBJECT(widget), paneKey) != nullptr) {
    panes.push_back(widget);
    return;
  }
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    addPanes(child, panes);
  }
}

GtkWidget* pageIn(GtkWidget* widget) {
  if (WEBKIT_IS_WEB_VIEW(widget)) return widget;
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (auto* found = pageIn(child)) return found;
  }
  return nullptr;
}

bool focusPane(GtkWidget* pane) {
  // The page as a whole: where the keyboard is in it, the page knows.
  if (auto* page = pageIn(pane)) return gtk_widget_grab_focus(page) != FALSE;
  return gtk_widget_child_focus(pane, GTK_DIR_TAB_FORWARD) != FALSE;
}

}  // namespace

void markAsPane(GtkWidget* widget) { g_object_set_data(G_OBJECT(widget), paneKey, GINT_TO_POINTER(1)); }

bool focusNextPane(GtkWindow* window, bool isForward) {
  std::vector<GtkWidget*> panes;
  addPanes(GTK_WIDGET(window), panes);
  if (panes.empty()) return false;
  GtkWidget* focus = gtk_window_get_focus(window);
  const auto present =
      std::find_if(panes.begin(), panes.end(), [&](GtkWidget* pane) { return isIn(focus, pane); });
  const auto count = panes.size();
  const bool isInNone = present == panes.end();
  auto index = isInNone ? (isForward ? count - 1 : 0) : static_cast<std::size_t>(present - panes.begin());
  for (std::size_t tried = 0; tried < count; ++tried) {
    index = (index + (isForward ? 1 : count - 1)) % count;
    if (!isInNone && panes[index] == *present) return false;
    if (!focusPane(panes[index])) continue;
    noteKeyboardClaim();
    gtk_window_set_focus_visible(window, TRUE);
    return true;
  }
  return false;
}

void noteTab(bool isBackward) { isLastTabBackward = isBackward; }

bool wasLastTabBackward() { return isLastTabBackward; }

void noteKeyboardClaim() { ++claims; }

void keyboardMayLeave(GtkWidget* leaving) {
  GtkRoot* root = gtk_widget_get_root(leaving);
  GtkWidget* focus = root != nullptr ? gtk_root_get_focus(root) : nullptr;
  if (!isIn(focus, leaving)) return;
  DispatchQueue::main().async([kept = GObjectPtr<GtkWidget>::retain(focus), before = claims] {
    if (claims == before && gtk_widget_get_mapped(kept.get())) gtk_widget_grab_focus(kept.get());
  });
}

}  // namespace platform
