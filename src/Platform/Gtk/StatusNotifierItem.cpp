#include "Platform/Gtk/StatusNotifierItem.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAssets.h"
#include "Platform/Gtk/ProgramFolders.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/LogText.h"
#include "Platform/NSApplication.h"

#include <array>
#include <string_view>
#include <utility>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";

constexpr const char* itemIntrospection = R"xml(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <method name="Activate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
  <method name="SecondaryActivate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
  <method name="ContextMenu"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
  <method name="Scroll"><arg type="i" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ProvideXdgActivationToken"><arg type="s" direction="in"/></method>
  <signal name="NewIcon"/><signal name="NewTitle"/><signal name="NewToolTip"/>
  <signal name="NewStatus"><arg type="s"/></signal>
</interface></node>)xml";

using Colour = std::array<guint8, 3>;

/// Seen on light and on dark panels alike, for hosts that take pixels only and can't colour a shape.
constexpr Colour neutralGrey = {0x9a, 0x99, 0x96};
/// Those of the pictures for light panels, and for dark ones.
constexpr Colour dark = {0x2e, 0x34, 0x36};
constexpr Colour light = {0xee, 0xee, 0xec};

/// A window's property takes no text of any length.
constexpr std::size_t longestToken = 1024;

/// Black and white stand out from a panel of this luminance alike.
constexpr double betweenDarkAndLight = 0.179;

/// One entry of IconPixmap: the picture's shape in A, R, G, B bytes.
GVariant* pixmap(const std::string& file, int size, const Colour& colour) {
  const auto picture =
      GObjectPtr<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file_at_size(file.c_str(), size, size, nullptr));
  if (!picture || gdk_pixbuf_get_has_alpha(picture.get()) == FALSE) return nullptr;
  const int width = gdk_pixbuf_get_width(picture.get());
  const int height = gdk_pixbuf_get_height(picture.get());
  const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(picture.get()));
  const guint8* pixels = gdk_pixbuf_read_pixels(picture.get());
  GVariantBuilder bytes;
  g_variant_builder_init(&bytes, G_VARIANT_TYPE("ay"));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const guint8* pixel = pixels + static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x) * 4;
      g_variant_builder_add(&bytes, "y", pixel[3]);
      for (const auto component : colour) g_variant_builder_add(&bytes, "y", component);
    }
  }
  return g_variant_new("(ii@ay)", width, height, g_variant_builder_end(&bytes));
}

/// Cinnamon's panel takes a file with "symbolic" in its path for a name in the theme, and draws nothing. Of a
/// name it takes the symbolic twin where there is one, so those that it is told have none. In sway the bars
/// draw symbolic icons as they come, and nobody tells how bright they are.
std::string iconName(const std::string& image, std::optional<bool> isForLightPanels) {
  auto name = iconNameOfStatusImage(image);
  constexpr std::string_view ending = "-symbolic";
  if ((isCinnamon() || isSway() || isForLightPanels) && name.ends_with(ending))
    name.erase(name.size() - ending.size());
  if (isForLightPanels) {
    name += *isForLightPanels ? "-on-light" : "-on-dark";
  } else if (isCinnamon()) {
    name += "-grey";
  } else if (isSway()) {
    name += "-outlined";
  }
  return name;
}

}  // namespace

class StatusNotifierItem::Button : public NSStatusBarButton {
 public:
  explicit Button(StatusNotifierItem& item) : item_(item) {}

  void setImage(StatusImage statusImage) override {
    if (image == statusImage) return;
    image = std::move(statusImage);
    item_.iconChanged();
  }
  NSRect bounds() const override { return {{0, 0}, {item_.length_, image.size.height}}; }

  StatusImage image;

 private:
  StatusNotifierItem& item_;
};

StatusNotifierItem::StatusNotifierItem(double length, GDBusConnection* connection, Events events)
    : length_(length),
      connection_(connection),
      events_(std::move(events)),
      button_(std::make_unique<Button>(*this)),
      menuExporter_(
          [this] {
            watchKeys();
            send(NSEvent::EventType::rightMouseUp, lastClick_);
          },
          [this] {
            if (preparedMenu() != nullptr && preparedMenu()->delegate != nullptr) {
              preparedMenu()->delegate->menuDidClose(*preparedMenu());
            }
          }) {
  if (connection_ == nullptr) {
    settle();
    return;
  }
  static GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(itemIntrospection, nullptr);
  static const GDBusInterfaceVTable table = {onMethodCall, onGetProperty, nullptr, {}};
  registration_ = g_dbus_connection_register_object(connection_, itemPath, info->interfaces[0], &table, this,
                                                    nullptr, nullptr);
  menuExporter_.registerOn(connection_);
  busName_ = std::string(itemInterface) + "-" + std::to_string(getpid()) + "-1";
  ownedName_ = g_bus_own_name_on_connection(connection_, busName_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE,
                                            nullptr, nullptr, nullptr, nullptr);
  hostSignal_ =
      g_dbus_connection_signal_subscribe(connection_, watcherName, watcherName, nullptr, watcherPath, nullptr,
                                         G_DBUS_SIGNAL_FLAGS_NONE, onHostSignal, this, nullptr);
  watch_ = g_bus_watch_name_on_connection(connection_, watcherName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                          onWatcherAppeared, onWatcherVanished, this, nullptr);
}

void StatusNotifierItem::watchKeys() {
  // A key that reaches a window of ours tells what panels don't: their menu, which had the keyboard, is gone.
  // The newest monitor hears of it before the key's command runs, which may be the menu's own.
  keyMonitor_ = NSEvent::addLocalMonitorForEvents(NSEvent::mask(NSEvent::EventType::keyDown),
                                                  [this](const NSEvent& event) -> std::optional<NSEvent> {
                                                    // A key that the panel had no use for in its menu may
                                                    // come through as well.
                                                    if ((event.modifierFlags & NSEvent::commandFlag) != 0) {
                                                      menuExporter_.wasClosed();
                                                    } else {
                                                      menuExporter_.closeSoon();
                                                    }
                                                    return event;
                                                  });
}

StatusNotifierItem::~StatusNotifierItem() {
  g_cancellable_cancel(cancellable_.get());
  if (connection_ == nullptr) return;
  g_bus_unwatch_name(watch_);
  g_dbus_connection_signal_unsubscribe(connection_, hostSignal_);
  g_bus_unown_name(ownedName_);
  g_dbus_connection_unregister_object(connection_, registration_);
}

NSStatusBarButton* StatusNotifierItem::button() { return button_.get(); }

void StatusNotifierItem::prepareMenu(std::shared_ptr<NSMenu> statusMenu) {
  preparedMenu_ = statusMenu;
  menuExporter_.setMenu(std::move(statusMenu));
}

void StatusNotifierItem::popUpStatusItemMenu(std::shared_ptr<NSMenu> statusMenu) {
  prepareMenu(std::move(statusMenu));
  // A panel that draws menus puts this one up by itself at a right click. It can't be asked for it at another
  // occasion, and some panels draw none.
  if (menuExporter_.isBeingOpened() || !whenToolkitReady) return;
  menuExporter_.wasOpened();
  whenToolkitReady([this] { showOwnMenu(); });
}

void StatusNotifierItem::showOwnMenu() {
  if (!preparedMenu_) return;
  menuWindow_ = std::make_unique<StatusMenuWindow>(
      preparedMenu_, StatusMenuWindow::Events{[this](std::size_t item) { menuExporter_.wasChosen(item); },
                                              [this] { menuExporter_.wasClosed(); }});
  std::optional<PixelPoint> icon;
  if (lastClick_ != NSPoint{}) icon = {static_cast<int>(lastClick_.x), static_cast<int>(lastClick_.y)};
  menuWindow_->show(icon);
}

void StatusNotifierItem::settle() {
  if (std::exchange(isSettled_, true)) return;
  if (events_.settled) events_.settled();
}

void StatusNotifierItem::setHasTray(bool hasTray) {
  if (hasTray_ == hasTray) return;
  hasTray_ = hasTray;
  if (events_.trayChanged) events_.trayChanged(hasTray);
}

void StatusNotifierItem::onWatcherAppeared(GDBusConnection*, const char*, const char*, gpointer self) {
  auto* item = static_cast<StatusNotifierItem*>(self);
  item->menuExporter_.forgetReader();
  item->registerWithWatcher();
}

void StatusNotifierItem::onWatcherVanished(GDBusConnection*, const char*, gpointer self) {
  auto* item = static_cast<StatusNotifierItem*>(self);
  item->setHasTray(false);
  item->settle();
  if (item->events_.answered) item->events_.answered();
}

void StatusNotifierItem::registerWithWatcher() {
  g_dbus_connection_call(
      connection_, watcherName, watcherPath, watcherName, "RegisterStatusNotifierItem",
      g_variant_new("(s)", busName_.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer self) {
        GError* raw = nullptr;
        GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raw));
        const GErrorPtr error(raw);
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        auto* item = static_cast<StatusNotifierItem*>(self);
        if (error) {
          debugLog("StatusNotifierItem", "registerWithWatcher()", forLog(error->message));
          item->settle();
          if (item->events_.answered) item->events_.answered();
          return;
        }
        item->settle();
        item->readHostRegistered();
      },
      this);
}

void StatusNotifierItem::readHostRegistered() {
  g_dbus_connection_call(
      connection_, watcherName, watcherPath, "org.freedesktop.DBus.Properties", "Get",
      g_variant_new("(ss)", watcherName, "IsStatusNotifierHostRegistered"), G_VARIANT_TYPE("(v)"),
      G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer self) {
        GError* raw = nullptr;
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raw));
        const GErrorPtr error(raw);
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        bool hasHost = false;
        if (reply) {
          GVariant* value = nullptr;
          g_variant_get(reply.get(), "(v)", &value);
          hasHost = g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
          g_variant_unref(value);
        }
        auto* item = static_cast<StatusNotifierItem*>(self);
        item->setHasTray(hasHost);
        if (item->events_.answered) item->events_.answered();
      },
      this);
}

void StatusNotifierItem::onHostSignal(GDBusConnection*, const char*, const char*, const char*,
                                      const char* signal, GVariant*, gpointer self) {
  const std::string name = signal;
  if (name == "StatusNotifierHostRegistered" || name == "StatusNotifierHostUnregistered") {
    static_cast<StatusNotifierItem*>(self)->readHostRegistered();
  }
}

void StatusNotifierItem::send(NSEvent::EventType type, NSPoint point) {
  if (!button_->action || (button_->sendActionOn & NSEvent::mask(type)) == 0) return;
  auto& app = NSApp();
  app.currentEvent = NSEvent{type, point};
  button_->action();
  app.currentEvent.reset();
}

void StatusNotifierItem::onMethodCall(GDBusConnection*, const char*, const char*, const char*,
                                      const char* method, GVariant* parameters,
                                      GDBusMethodInvocation* invocation, gpointer self) {
  auto* item = static_cast<StatusNotifierItem*>(self);
  const std::string name = method;
  // Answered first: what a click starts must not keep the panel waiting.
  if (name != "Activate" && name != "SecondaryActivate" && name != "ContextMenu") {
    if (name == "ProvideXdgActivationToken") {
      const char* token = nullptr;
      g_variant_get(parameters, "(&s)", &token);
      item->token_ = std::string_view(token).size() <= longestToken ? token : "";
    }
    g_dbus_method_invocation_return_value(invocation, nullptr);
    return;
  }
  gint32 x = 0;
  gint32 y = 0;
  g_variant_get(parameters, "(ii)", &x, &y);
  g_dbus_method_invocation_return_value(invocation, nullptr);
  item->lastClick_ = {static_cast<double>(x), static_cast<double>(y)};
  if (item->pixelOfClick) item->lastClick_ = item->pixelOfClick(item->lastClick_);
  if (name == "ContextMenu") item->onContextMenu();
  if (name != "Activate") return;
  if (item->shouldIgnoreClick && item->shouldIgnoreClick()) return;
  // The panel has the click, and a window manager may leave the keyboard with the window that had it before.
  const ActivationScope scope({.token = std::exchange(item->token_, {}), .isClick = true});
  item->send(NSEvent::EventType::leftMouseUp, item->lastClick_);
}

void StatusNotifierItem::onContextMenu() {
  // A panel that has read the menu draws it.
  if (menuExporter_.isRead()) return;
  if (menuWindow_ && menuWindow_->isShown()) {
    menuWindow_->close();
  } else {
    send(NSEvent::EventType::rightMouseUp, lastClick_);
  }
}

GVariant* StatusNotifierItem::onGetProperty(GDBusConnection*, const char*, const char*, const char*,
                                            const char* property, GError** error, gpointer self) {
  GVariant* value = static_cast<StatusNotifierItem*>(self)->property(property);
  if (value == nullptr) {
    g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "No property %s", property);
  }
  return value;
}

GVariant* StatusNotifierItem::property(const std::string& name) const {
  const auto noPictures = [] { return g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0); };
  const auto icons = ProgramFolders::data() / "icons";
  if (name == "Category") return g_variant_new_string("ApplicationStatus");
  if (name == "Id") return g_variant_new_string("velkin");
  if (name == "Title") return g_variant_new_string("Velkin");
  if (name == "Status") return g_variant_new_string("Active");
  if (name == "WindowId") return g_variant_new_int32(0);
  if (name == "IconName")
    return g_variant_new_string(iconName(button_->image.name, isForLightPanels_).c_str());
  if (name == "IconThemePath") return g_variant_new_string(icons.c_str());
  if (name == "IconPixmap") {
    const Colour& colour = !isForLightPanels_ ? neutralGrey : *isForLightPanels_ ? dark : light;
    GVariantBuilder pictures;
    g_variant_builder_init(&pictures, G_VARIANT_TYPE("a(iiay)"));
    for (const int size : {16, 22, 44}) {
      if (GVariant* picture = pixmap((icons / (iconNameOfStatusImage(button_->image.name) + ".svg")).string(),
                                     size, colour)) {
        g_variant_builder_add_value(&pictures, picture);
      }
    }
    return g_variant_builder_end(&pictures);
  }
  if (name == "OverlayIconName" || name == "AttentionIconName") return g_variant_new_string("");
  if (name == "OverlayIconPixmap" || name == "AttentionIconPixmap") return noPictures();
  if (name == "ToolTip") return g_variant_new("(s@a(iiay)ss)", "", noPictures(), "Velkin", "");
  if (name == "ItemIsMenu") return g_variant_new_boolean(FALSE);
  if (name == "Menu") return g_variant_new_object_path(StatusMenuExporter::objectPath);
  return nullptr;
}

void StatusNotifierItem::setPanelLuminance(std::optional<double> luminance) {
  std::optional<bool> isForLightPanels;
  if (luminance) isForLightPanels = *luminance > betweenDarkAndLight;
  if (isForLightPanels_ == isForLightPanels) return;
  isForLightPanels_ = isForLightPanels;
  iconChanged();
}

void StatusNotifierItem::iconChanged() {
  if (connection_ == nullptr) return;
  g_dbus_connection_emit_signal(connection_, nullptr, itemPath, itemInterface, "NewIcon", nullptr, nullptr);
}

}  // namespace platform
