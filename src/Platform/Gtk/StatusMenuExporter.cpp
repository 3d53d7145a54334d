#include "Platform/Gtk/StatusMenuExporter.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <array>
#include <cctype>
#include <utility>

namespace platform {

namespace {

constexpr const char* interfaceName = "com.canonical.dbusmenu";

constexpr const char* menuIntrospection = R"xml(<node><interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout"><arg type="i" direction="in"/><arg type="i" direction="in"/>
    <arg type="as" direction="in"/><arg type="u" direction="out"/><arg type="(ia{sv}av)" direction="out"/></method>
  <method name="GetGroupProperties"><arg type="ai" direction="in"/><arg type="as" direction="in"/>
    <arg type="a(ia{sv})" direction="out"/></method>
  <method name="GetProperty"><arg type="i" direction="in"/><arg type="s" direction="in"/>
    <arg type="v" direction="out"/></method>
  <method name="Event"><arg type="i" direction="in"/><arg type="s" direction="in"/>
    <arg type="v" direction="in"/><arg type="u" direction="in"/></method>
  <method name="EventGroup"><arg type="a(isvu)" direction="in"/><arg type="ai" direction="out"/></method>
  <method name="AboutToShow"><arg type="i" direction="in"/><arg type="b" direction="out"/></method>
  <method name="AboutToShowGroup"><arg type="ai" direction="in"/><arg type="ai" direction="out"/>
    <arg type="ai" direction="out"/></method>
  <signal name="ItemsPropertiesUpdated"><arg type="a(ia{sv})"/><arg type="a(ias)"/></signal>
  <signal name="LayoutUpdated"><arg type="u"/><arg type="i"/></signal>
</interface></node>)xml";

/// The protocol's names of keys that aren't named by their letter.
struct KeyName {
  char character;
  const char* name;
};
constexpr std::array keyNames = {KeyName{',', "comma"}, KeyName{'.', "period"}, KeyName{'/', "slash"},
                                 KeyName{'=', "equal"}, KeyName{'-', "minus"},  KeyName{' ', "space"}};

GVariant* shortcut(const NSMenuItem& item) {
  GVariantBuilder keys;
  g_variant_builder_init(&keys, G_VARIANT_TYPE("as"));
  const char key = item.keyEquivalent().front();
  const auto mask = item.keyEquivalentModifierMask();
  const bool isUpper = std::isupper(static_cast<unsigned char>(key)) != 0;
  if ((mask & NSMenuItem::commandMask) != 0) g_variant_builder_add(&keys, "s", "Control");
  if ((mask & NSMenuItem::optionMask) != 0) g_variant_builder_add(&keys, "s", "Alt");
  if ((mask & NSMenuItem::shiftMask) != 0 || isUpper) g_variant_builder_add(&keys, "s", "Shift");
  if ((mask & NSMenuItem::controlMask) != 0) g_variant_builder_add(&keys, "s", "Super");
  std::string name(1, static_cast<char>(std::toupper(static_cast<unsigned char>(key))));
  for (const auto& known : keyNames) {
    if (known.character == key) name = known.name;
  }
  g_variant_builder_add(&keys, "s", name.c_str());
  GVariant* combination = g_variant_builder_end(&keys);
  return g_variant_new_array(G_VARIANT_TYPE("as"), &combination, 1);
}

void add(GVariantBuilder& builder, const char* name, GVariant* value) {
  g_variant_builder_add(&builder, "{sv}", name, value);
}

}  // namespace

StatusMenuExporter::StatusMenuExporter(std::function<void()> willOpen, std::function<void()> didClose)
    : willOpen_(std::move(willOpen)), didClose_(std::move(didClose)) {}

StatusMenuExporter::~StatusMenuExporter() {
  if (registration_ != 0) g_dbus_connection_unregister_object(connection_, registration_);
}

void StatusMenuExporter::setMenu(std::shared_ptr<NSMenu> menu) {
  if (menu == menu_) return;
  menu_ = std::move(menu);
  if (menu_) menuSubscription_ = menu_->observers().subscribe([this] { layoutChanged(); });
  layoutChanged();
}

void StatusMenuExporter::registerOn(GDBusConnection* connection) {
  connection_ = connection;
  static GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(menuIntrospection, nullptr);
  static const GDBusInterfaceVTable table = {onMethodCall, onGetProperty, nullptr, {}};
  registration_ = g_dbus_connection_register_object(connection, objectPath, info->interfaces[0], &table, this,
                                                    nullptr, nullptr);
}

NSMenuItem* StatusMenuExporter::item(int id) const {
  // 0 is the menu itself; the items follow in their order.
  if (!menu_ || id < 1 || static_cast<std::size_t>(id) > menu_->items().size()) return nullptr;
  return menu_->items()[static_cast<std::size_t>(id) - 1].get();
}

GVariant* StatusMenuExporter::properties(int id) const {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  if (id == 0) {
    add(builder, "children-display", g_variant_new_string("submenu"));
    return g_variant_builder_end(&builder);
  }
  const auto* row = item(id);
  if (row == nullptr) return g_variant_builder_end(&builder);
  add(builder, "visible", g_variant_new_boolean(!row->isHidden()));
  if (row->isSeparatorItem()) {
    add(builder, "type", g_variant_new_string("separator"));
    return g_variant_builder_end(&builder);
  }
  add(builder, "label", g_variant_new_string(row->title().c_str()));
  add(builder, "enabled", g_variant_new_boolean(row->isEnabled()));
  // Also while it is off: panels read what kind of item it is once.
  if (row->isCheckable()) {
    add(builder, "toggle-type", g_variant_new_string("checkmark"));
    add(builder, "toggle-state", g_variant_new_int32(static_cast<int>(row->state())));
  }
  if (!row->keyEquivalent().empty()) add(builder, "shortcut", shortcut(*row));
  return g_variant_builder_end(&builder);
}

GVariant* StatusMenuExporter::layout(int parent, int depth) const {
  GVariantBuilder children;
  g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
  if (parent == 0 && depth != 0 && menu_) {
    for (std::size_t i = 0; i < menu_->items().size(); ++i) {
      const int id = static_cast<int>(i) + 1;
      g_variant_builder_add(&children, "v",
                            g_variant_new("(i@a{sv}@av)", id, properties(id),
                                          g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0)));
    }
  }
  return g_variant_new("(i@a{sv}@av)", parent, properties(parent), g_variant_builder_end(&children));
}

void StatusMenuExporter::onMethodCall(GDBusConnection*, const char*, const char*, const char*,
                                      const char* method, GVariant* parameters,
                                      GDBusMethodInvocation* invocation, gpointer self) {
  static_cast<StatusMenuExporter*>(self)->handle(method, parameters, invocation);
}

GVariant* StatusMenuExporter::onGetProperty(GDBusConnection*, const char*, const char*, const char*,
                                            const char* property, GError** error, gpointer) {
  const std::string name = property;
  if (name == "Version") return g_variant_new_uint32(3);
  if (name == "TextDirection") return g_variant_new_string("ltr");
  if (name == "Status") return g_variant_new_string("normal");
  if (name == "IconThemePath") return g_variant_new_strv(nullptr, 0);
  g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "No property %s", property);
  return nullptr;
}

void StatusMenuExporter::handle(const std::string& method, GVariant* parameters,
                                GDBusMethodInvocation* invocation) {
  std::string error;
  GVariant* value = respond(method, parameters, error);
  if (error.empty()) {
    g_dbus_method_invocation_return_value(invocation, value);
  } else {
    g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                  error.c_str());
  }
}

GVariant* StatusMenuExporter::respond(const std::string& method, GVariant* parameters, std::string& error) {
  const auto noIds = [] { return g_variant_new_array(G_VARIANT_TYPE_INT32, nullptr, 0); };
  int id = 0;
  if (method == "GetLayout") {
    isRead_ = true;
    int depth = 0;
    g_variant_get(parameters, "(ii@as)", &id, &depth, nullptr);
    return g_variant_new("(u@(ia{sv}av))", revision_, layout(id, depth));
  }
  if (method == "GetGroupProperties") return groupProperties(parameters);
  if (method == "GetProperty") {
    const char* name = nullptr;
    g_variant_get(parameters, "(i&s)", &id, &name);
    const GVariantPtr all(g_variant_ref_sink(properties(id)));
    const GVariantPtr value(g_variant_lookup_value(all.get(), name, nullptr));
    if (value) return g_variant_new("(v)", value.get());
    error = std::string("No property ") + name;
    return nullptr;
  }
  if (method == "Event") {
    const char* event = nullptr;
    g_variant_get(parameters, "(i&s@vu)", &id, &event, nullptr, nullptr);
    itemEvent(id, event);
    return nullptr;
  }
  if (method == "EventGroup") {
    GVariantIter* events = nullptr;
    g_variant_get(parameters, "(a(isvu))", &events);
    const char* event = nullptr;
    while (g_variant_iter_next(events, "(i&s@vu)", &id, &event, nullptr, nullptr)) itemEvent(id, event);
    g_variant_iter_free(events);
    return g_variant_new("(@ai)", noIds());
  }
  if (method == "AboutToShow") {
    g_variant_get(parameters, "(i)", &id);
    aboutToShow(id);
    return g_variant_new("(b)", FALSE);
  }
  // AboutToShowGroup, the last that there is.
  GVariantIter* ids = nullptr;
  g_variant_get(parameters, "(ai)", &ids);
  while (g_variant_iter_next(ids, "i", &id)) aboutToShow(id);
  g_variant_iter_free(ids);
  return g_variant_new("(@ai@ai)", noIds(), noIds());
}

GVariant* StatusMenuExporter::groupProperties(GVariant* parameters) const {
  GVariantIter* ids = nullptr;
  g_variant_get(parameters, "(ai@as)", &ids, nullptr);
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ia{sv})"));
  int id = 0;
  while (g_variant_iter_next(ids, "i", &id)) g_variant_builder_add(&builder, "(i@a{sv})", id, properties(id));
  g_variant_iter_free(ids);
  return g_variant_new("(a(ia{sv}))", &builder);
}

void StatusMenuExporter::aboutToShow(int id) {
  if (id != 0) return;
  // Panels don't say when a menu closes; one that opens again must have been closed before.
  menuClosed();
  isOpen_ = true;
  isBeingOpened_ = true;
  willOpen_();
  isBeingOpened_ = false;
}

void StatusMenuExporter::closeSoon() {
  // Some panels say so before they say what was clicked, and what was clicked may be the menu's own end.
  constexpr double sameGesture = 0.25;
  if (isOpen_) closing_ = DispatchQueue::main().timer(sameGesture, [this] { menuClosed(); });
}

void StatusMenuExporter::menuClosed() {
  closing_.reset();
  if (!isOpen_) return;
  isOpen_ = false;
  didClose_();
}

void StatusMenuExporter::itemEvent(int id, const std::string& event) {
  if (event == "closed" && id == 0) {
    closeSoon();
    return;
  }
  if (event != "clicked") return;
  closing_.reset();
  const auto* row = item(id);
  if (row == nullptr || !row->isEnabled() || row->isHidden() || !row->action) return;
  // A copy, in a later turn: the action may change the menu or end the process, and the panel has its answer.
  DispatchQueue::main().async([this, alive = isAlive_.watch(), action = row->action] {
    {
      const ActivationScope scope({.isClick = true});
      action();
    }
    if (alive) menuClosed();
  });
}

void StatusMenuExporter::itemChanged(int id) {
  if (connection_ == nullptr) return;
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE("a(ia{sv})"));
  g_variant_builder_add(&changed, "(i@a{sv})", id, properties(id));
  GVariantBuilder removed;
  g_variant_builder_init(&removed, G_VARIANT_TYPE("a(ias)"));
  g_dbus_connection_emit_signal(connection_, nullptr, objectPath, interfaceName, "ItemsPropertiesUpdated",
                                g_variant_new("(a(ia{sv})a(ias))", &changed, &removed), nullptr);
}

void StatusMenuExporter::layoutChanged() {
  itemSubscriptions_.clear();
  if (menu_) {
    for (std::size_t i = 0; i < menu_->items().size(); ++i) {
      itemSubscriptions_.push_back(menu_->items()[i]->observers().subscribe(
          [this, id = static_cast<int>(i) + 1] { itemChanged(id); }));
    }
  }
  ++revision_;
  if (connection_ == nullptr) return;
  g_dbus_connection_emit_signal(connection_, nullptr, objectPath, interfaceName, "LayoutUpdated",
                                g_variant_new("(ui)", revision_, 0), nullptr);
}

}  // namespace platform
