#include "Platform/Gtk/GtkRenderedView.h"

#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkMouseEvents.h"
#include "Platform/Gtk/KeyboardPlaces.h"
#include "Platform/Gtk/Toolkit.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

#include <webkit/webkit.h>

namespace platform {

namespace {

int pixels(double length) { return static_cast<int>(std::lround(length)); }

GtkAlign gtkAlign(Alignment alignment) {
  switch (alignment) {
    case Alignment::leading:
    case Alignment::top:
      return GTK_ALIGN_START;
    case Alignment::trailing:
    case Alignment::bottom:
      return GTK_ALIGN_END;
    case Alignment::fill:
      return GTK_ALIGN_FILL;
    case Alignment::center:
      break;
  }
  return GTK_ALIGN_CENTER;
}

bool hasLetters(std::string_view text) {
  return std::ranges::any_of(text, [](unsigned char c) { return std::isalpha(c) != 0; });
}

/// What a text, a button or a check box says by itself; nothing for a sign.
std::string_view ownWords(const Element& element) {
  const auto readable = [](std::string_view text) { return hasLetters(text) ? text : std::string_view(); };
  if (const auto* text = std::get_if<TextContent>(&element.content)) return readable(text->text);
  if (const auto* box = std::get_if<CheckBoxContent>(&element.content)) return readable(box->title);
  if (!std::holds_alternative<ButtonContent>(element.content) || element.children.empty()) return {};
  const auto& title = element.children.front().element();
  return std::holds_alternative<TextContent>(title.content) ? ownWords(title) : std::string_view();
}

/// True if what lies below the pointer in `widget` is a page.
bool isOverPage(GtkWidget* widget, GdkEvent* event) {
  GtkNative* native = gtk_native_get_for_surface(gdk_event_get_surface(event));
  double x = 0;
  double y = 0;
  if (native == nullptr || !gdk_event_get_position(event, &x, &y)) return false;
  double left = 0;
  double top = 0;
  gtk_native_get_surface_transform(native, &left, &top);
  const graphene_point_t inNative = {static_cast<float>(x - left), static_cast<float>(y - top)};
  graphene_point_t place;
  if (!gtk_widget_compute_point(GTK_WIDGET(native), widget, &inNative, &place)) return false;
  for (GtkWidget* at = gtk_widget_pick(widget, place.x, place.y, GTK_PICK_DEFAULT);
       at != nullptr && at != widget; at = gtk_widget_get_parent(at)) {
    if (WEBKIT_IS_WEB_VIEW(at)) return true;
  }
  return false;
}

/// What is off for what it stands in is off for assistive tools too. Not all of the toolkit's versions say
/// so.
void tellWhetherOff(GtkWidget* widget, GtkStateFlags before, gpointer) {
  const auto isOff = [](unsigned flags) { return (flags & GTK_STATE_FLAG_INSENSITIVE) != 0; };
  const bool isOffNow = isOff(gtk_widget_get_state_flags(widget));
  if (isOff(before) == isOffNow) return;
  gtk_accessible_update_state(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_STATE_DISABLED, gboolean(isOffNow), -1);
}

}  // namespace

GtkRenderedView::GtkRenderedView(GtkWidget* widget) : widget_(GObjectPtr<GtkWidget>::retain(widget)) {
  g_signal_connect(widget, "state-flags-changed", G_CALLBACK(tellWhetherOff), nullptr);
}

GtkRenderedView::~GtkRenderedView() {
  if (element_.modifiers.place) element_.modifiers.place->find = {};
  g_signal_handlers_disconnect_by_data(widget(), this);
  // The widget may live on for a while, held by an event that is on its way.
  for (const auto& [owner, controller] : controllers_) {
    g_signal_handlers_disconnect_by_data(owner.get(), this);
    g_signal_handlers_disconnect_by_data(controller, this);
    gtk_widget_remove_controller(owner.get(), controller);
  }
  // Containers without a protocol of their own for leaving take any child out by this.
  if (GtkWidget* parent = gtk_widget_get_parent(widget())) {
    keyboardMayLeave(widget());
    if (GTK_IS_BOX(parent)) {
      gtk_box_remove(GTK_BOX(parent), widget());
    } else if (GTK_IS_GRID(parent)) {
      gtk_grid_remove(GTK_GRID(parent), widget());
    } else if (GTK_IS_BUTTON(parent)) {
      gtk_button_set_child(GTK_BUTTON(parent), nullptr);
    } else if (GTK_IS_OVERLAY(parent)) {
      if (gtk_overlay_get_child(GTK_OVERLAY(parent)) == widget()) {
        gtk_overlay_set_child(GTK_OVERLAY(parent), nullptr);
      } else {
        gtk_overlay_remove_overlay(GTK_OVERLAY(parent), widget());
      }
    } else {
      gtk_widget_unparent(widget());
    }
  }
}

void GtkRenderedView::setChildren(std::span<RenderedView* const>) {}

void GtkRenderedView::update(const Element& element) {
  if (element_.modifiers.place) element_.modifiers.place->find = {};
  element_ = element;
  isUpdating_ = true;
  updateContent(element_);
  applyModifiers();
  isUpdating_ = false;
}

void GtkRenderedView::applyModifiers() {
  const auto& m = element_.modifiers;
  applyRole();
  applyPlace();
  style_.apply(widget(), m);
  const bool hasPaddingInside = m.background || m.border;
  const auto around = hasPaddingInside ? m.margin : m.margin + m.padding;
  gtk_widget_set_margin_top(widget(), pixels(around.top));
  gtk_widget_set_margin_bottom(widget(), pixels(around.bottom));
  gtk_widget_set_margin_start(widget(), pixels(around.leading));
  gtk_widget_set_margin_end(widget(), pixels(around.trailing));
  gtk_widget_set_opacity(widget(), m.opacity.value_or(1));
  applyTooltip(m.help);
  if (m.isDisabled && gtk_widget_has_focus(focusWidget())) {
    // A widget that is switched off while it has the keyboard never learns that it lost it.
    if (auto* root = gtk_widget_get_root(widget())) gtk_root_set_focus(root, nullptr);
  }
  gtk_widget_set_sensitive(widget(), !m.isDisabled);
  gtk_widget_set_focus_on_click(widget(), !m.leavesKeyboard);
  if (m.cornerRadius) gtk_widget_set_overflow(widget(), GTK_OVERFLOW_HIDDEN);
  applyName();
  applyFrame(m);
  ensureGestures();
  ensurePress();
  applyFocus();
}

void GtkRenderedView::applyName() {
  const auto& m = element_.modifiers;
  // The help is the name only of what shows nothing but a sign.
  const auto words = m.help.empty() ? std::string_view() : ownWords(element_);
  const auto given = !m.label.empty() ? m.label : (words.empty() ? m.help : std::string(words));
  if (!given.empty()) {
    // Of a control that is made of several widgets, tools may look at each.
    for (GtkWidget* part : {widget(), focusWidget()})
      gtk_accessible_update_property(GTK_ACCESSIBLE(part), GTK_ACCESSIBLE_PROPERTY_LABEL, given.c_str(), -1);
  }
  const bool isNews = m.role == AccessibilityRole::status || m.role == AccessibilityRole::alert;
  if (!isNews) return;
  const auto* text = std::get_if<TextContent>(&element_.content);
  const auto& told = m.label.empty() && text != nullptr ? text->text : m.label;
  if (told == told_) return;
  told_ = told;
  // Blanks only keep the place of news to come.
  if (told_.find_first_not_of(" \n") != std::string::npos) toolkit::announce(widget(), told_);
}

void GtkRenderedView::applyRole() {
  const auto& role = element_.modifiers.role;
  if (role == AccessibilityRole::toolbar) markAsPane(widget());
  // The toolkit takes a role as long as it has told nobody of the widget.
  if (!role || gtk_widget_get_realized(widget())) return;
  const auto gtkRole = [&] {
    switch (*role) {
      case AccessibilityRole::none:
        return GTK_ACCESSIBLE_ROLE_PRESENTATION;
      case AccessibilityRole::alert:
        return GTK_ACCESSIBLE_ROLE_ALERT;
      case AccessibilityRole::button:
        return GTK_ACCESSIBLE_ROLE_BUTTON;
      case AccessibilityRole::group:
        return GTK_ACCESSIBLE_ROLE_GROUP;
      case AccessibilityRole::heading:
        return GTK_ACCESSIBLE_ROLE_HEADING;
      case AccessibilityRole::image:
        return GTK_ACCESSIBLE_ROLE_IMG;
      case AccessibilityRole::link:
        return GTK_ACCESSIBLE_ROLE_LINK;
      case AccessibilityRole::list:
        return GTK_ACCESSIBLE_ROLE_LIST;
      case AccessibilityRole::listItem:
        return GTK_ACCESSIBLE_ROLE_LIST_ITEM;
      case AccessibilityRole::status:
        return toolkit::newsRole();
      case AccessibilityRole::toolbar:
        return GTK_ACCESSIBLE_ROLE_TOOLBAR;
    }
    return GTK_ACCESSIBLE_ROLE_GROUP;
  }();
  if (gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(widget())) == gtkRole) return;
  g_object_set(widget(), "accessible-role", gtkRole, nullptr);
}

void GtkRenderedView::applyPlace() {
  const auto& place = element_.modifiers.place;
  if (!place) return;
  place->find = [this]() -> std::optional<ViewPlace::InWindow> {
    const auto frame = frameInWindow(widget());
    if (!frame) return std::nullopt;
    return ViewPlace::InWindow{windowNumber(GTK_WINDOW(gtk_widget_get_root(widget()))), *frame};
  };
}

void GtkRenderedView::applyTooltip(const std::string& text) {
  const char* present = gtk_widget_get_tooltip_text(widget());
  if (text == (present != nullptr ? present : "")) return;
  // For a visible widget the toolkit asks the display where the pointer is and waits for the answer. One that
  // has no place yet can't be below it.
  const bool hasPlace = gtk_widget_get_parent(widget()) != nullptr;
  if (!hasPlace) gtk_widget_set_visible(widget(), FALSE);
  gtk_widget_set_tooltip_text(widget(), text.empty() ? nullptr : text.c_str());
  if (!hasPlace) gtk_widget_set_visible(widget(), TRUE);
}

void GtkRenderedView::applyFrame(const Modifiers& m) {
  const auto& f = m.frame;
  const auto least = [](const std::optional<double>& fixed, const std::optional<double>& minimum) {
    if (fixed) return pixels(*fixed);
    return minimum ? pixels(*minimum) : -1;
  };
  gtk_widget_set_size_request(widget(), least(f.width, f.minWidth), least(f.height, f.minHeight));
  const auto expand = [](GtkWidget* widget, const std::optional<double>& fixed,
                         const std::optional<double>& most, auto setExpand, auto setIsSet) {
    if (!fixed && !most) return;
    setExpand(widget, gboolean(!fixed && most == infinity));
    setIsSet(widget, TRUE);
  };
  expand(widget(), f.width, f.maxWidth, gtk_widget_set_hexpand, gtk_widget_set_hexpand_set);
  expand(widget(), f.height, f.maxHeight, gtk_widget_set_vexpand, gtk_widget_set_vexpand_set);
}

void GtkRenderedView::align(Axis axis, Alignment alignment) {
  const auto& f = element_.modifiers.frame;
  const bool isSpacer = std::holds_alternative<SpacerContent>(element_.content);
  const bool isDivider = std::holds_alternative<DividerContent>(element_.content);
  const auto own = f.alignment.value_or(Alignment::fill);
  const auto horizontal = [&] {
    if (gtk_widget_compute_expand(widget(), GTK_ORIENTATION_HORIZONTAL)) return gtkAlign(own);
    if (axis == Axis::vertical && !isDivider && !isSpacer) return gtkAlign(alignment);
    return axis == Axis::depth ? gtkAlign(alignment) : GTK_ALIGN_FILL;
  };
  const auto vertical = [&] {
    if (gtk_widget_compute_expand(widget(), GTK_ORIENTATION_VERTICAL)) return GTK_ALIGN_FILL;
    if (axis == Axis::horizontal && !isDivider && !isSpacer) return gtkAlign(alignment);
    return axis == Axis::depth ? gtkAlign(alignment) : GTK_ALIGN_FILL;
  };
  const bool isLabel = GTK_IS_LABEL(widget());
  gtk_widget_set_halign(widget(), isLabel && own != Alignment::fill ? GTK_ALIGN_FILL : horizontal());
  gtk_widget_set_valign(widget(), vertical());
  if (isDivider) {
    // A line stands across the direction in which its neighbours follow one another.
    gtk_orientable_set_orientation(GTK_ORIENTABLE(widget()), axis == Axis::horizontal
                                                                 ? GTK_ORIENTATION_VERTICAL
                                                                 : GTK_ORIENTATION_HORIZONTAL);
  }
  if (isSpacer) {
    gtk_widget_set_hexpand(widget(), axis == Axis::horizontal);
    gtk_widget_set_vexpand(widget(), axis == Axis::vertical);
  }
}

void GtkRenderedView::addController(GtkWidget* owner, GtkEventController* controller) {
  gtk_widget_add_controller(owner, controller);
  controllers_.emplace_back(GObjectPtr<GtkWidget>::retain(owner), controller);
}

void GtkRenderedView::ensureGestures() {
  const auto& m = element_.modifiers;
  if (m.onTap && !hasTap_) {
    hasTap_ = true;
    GtkGesture* click = gtk_gesture_click_new();
    g_signal_connect_swapped(click, "released", G_CALLBACK(+[](GtkRenderedView* self) {
                               const auto action = self->element_.modifiers.onTap;
                               if (action) action();
                             }),
                             this);
    addController(widget(), GTK_EVENT_CONTROLLER(click));
    // A page keeps every press to itself.
    GtkEventController* overPage = gtk_event_controller_legacy_new();
    gtk_event_controller_set_propagation_phase(overPage, GTK_PHASE_CAPTURE);
    g_signal_connect(overPage, "event",
                     G_CALLBACK(+[](GtkEventControllerLegacy*, GdkEvent* event, gpointer data) -> gboolean {
                       auto* self = static_cast<GtkRenderedView*>(data);
                       if (gdk_event_get_event_type(event) != GDK_BUTTON_RELEASE ||
                           gdk_button_event_get_button(event) != GDK_BUTTON_PRIMARY ||
                           !isOverPage(self->widget(), event)) {
                         return FALSE;
                       }
                       const auto action = self->element_.modifiers.onTap;
                       if (action) action();
                       return FALSE;
                     }),
                     this);
    addController(widget(), overPage);
  }
  if (m.onHover && !hasHover_) {
    hasHover_ = true;
    GtkEventController* motion = gtk_event_controller_motion_new();
    g_signal_connect_swapped(motion, "enter", G_CALLBACK(+[](GtkRenderedView* self) {
                               const auto action = self->element_.modifiers.onHover;
                               if (action) action(true);
                             }),
                             this);
    g_signal_connect_swapped(motion, "leave", G_CALLBACK(+[](GtkRenderedView* self) {
                               const auto action = self->element_.modifiers.onHover;
                               if (action) action(false);
                             }),
                             this);
    addController(widget(), motion);
  }
}

void GtkRenderedView::ensurePress() {
  if (!element_.modifiers.onPress || hasPress_) return;
  hasPress_ = true;
  // No gesture: a button's own one would end it at once.
  GtkEventController* events = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(events, GTK_PHASE_CAPTURE);
  g_signal_connect(events, "event",
                   G_CALLBACK(+[](GtkEventControllerLegacy*, GdkEvent* event, gpointer data) {
                     auto* self = static_cast<GtkRenderedView*>(data);
                     const auto type = gdk_event_get_event_type(event);
                     const bool isPress = type == GDK_BUTTON_PRESS;
                     if ((isPress || type == GDK_BUTTON_RELEASE) &&
                         gdk_button_event_get_button(event) == GDK_BUTTON_PRIMARY) {
                       self->setIsDown(isPress);
                     }
                     if (type == GDK_KEY_PRESS) self->keyPressed(event);
                     return FALSE;
                   }),
                   this);
  addController(widget(), events);
  g_signal_connect_swapped(widget(), "unmap",
                           G_CALLBACK(+[](GtkRenderedView* self) { self->setIsDown(false); }), this);
}

void GtkRenderedView::keyPressed(GdkEvent* event) {
  const auto keyval = gdk_key_event_get_keyval(event);
  if (isDown_ || (keyval != GDK_KEY_space && keyval != GDK_KEY_KP_Space)) return;
  setIsDown(true);
  // The monitors keep the releases of keys, and a window that loses the keyboard doesn't get them.
  whenKeysAreUp([this, alive = isAlive_.watch()] {
    if (alive) setIsDown(false);
  });
}

void GtkRenderedView::setIsDown(bool isDown) {
  if (isDown_ == isDown) return;
  isDown_ = isDown;
  const auto action = element_.modifiers.onPress;
  if (action) action(isDown);
}

void GtkRenderedView::applyFocus() {
  const auto& binding = element_.modifiers.focused;
  if (!binding) return;
  if (!followsFocus_) {
    followsFocus_ = true;
    GtkEventController* focus = gtk_event_controller_focus_new();
    g_signal_connect_swapped(focus, "enter", G_CALLBACK(+[](GtkRenderedView* self) {
                               if (self->element_.modifiers.focused)
                                 self->element_.modifiers.focused->set(true);
                             }),
                             this);
    g_signal_connect_swapped(focus, "leave", G_CALLBACK(+[](GtkRenderedView* self) {
                               if (self->element_.modifiers.focused)
                                 self->element_.modifiers.focused->set(false);
                             }),
                             this);
    addController(focusWidget(), focus);
    // A view that isn't on show yet can't take the keyboard; it does as soon as it is.
    g_signal_connect_swapped(focusWidget(), "map", G_CALLBACK(+[](GtkRenderedView* self) {
                               const auto& wish = self->element_.modifiers.focused;
                               if (!wish || !wish->get()) return;
                               noteKeyboardClaim();
                               gtk_widget_grab_focus(self->focusWidget());
                             }),
                             this);
    // A window that is hidden keeps its focus, for when it comes back. A view that follows its place acts on
    // the keys that it gets there, and gets none any more.
    g_signal_connect_swapped(focusWidget(), "unmap", G_CALLBACK(+[](GtkRenderedView* self) {
                               const auto& m = self->element_.modifiers;
                               if (m.place && m.focused) m.focused->set(false);
                             }),
                             this);
  }
  if (binding->get() && gtk_widget_get_mapped(focusWidget()) && !gtk_widget_has_focus(focusWidget())) {
    noteKeyboardClaim();
    gtk_widget_grab_focus(focusWidget());
  }
}

std::vector<GtkWidget*> widgetsOf(std::span<RenderedView* const> views) {
  std::vector<GtkWidget*> widgets;
  widgets.reserve(views.size());
  for (auto* view : views) widgets.push_back(static_cast<GtkRenderedView*>(view)->widget());
  return widgets;
}

void arrangeChildren(GtkWidget* container, std::span<GtkWidget* const> wanted,
                     void (*insertAfter)(GtkWidget*, GtkWidget*, GtkWidget*),
                     void (*remove)(GtkWidget*, GtkWidget*)) {
  for (GtkWidget* child = gtk_widget_get_first_child(container); child != nullptr;) {
    GtkWidget* next = gtk_widget_get_next_sibling(child);
    if (std::find(wanted.begin(), wanted.end(), child) == wanted.end()) {
      keyboardMayLeave(child);
      remove(container, child);
    }
    child = next;
  }
  GtkWidget* before = nullptr;
  for (GtkWidget* child : wanted) {
    GtkWidget* atPlace =
        before == nullptr ? gtk_widget_get_first_child(container) : gtk_widget_get_next_sibling(before);
    if (atPlace != child) insertAfter(container, child, before);
    before = child;
  }
}

}  // namespace platform
