#include "Platform/Gtk/PortalHotKeyGrabs.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/DesktopKeySettings.h"
#include "Platform/Gtk/GtkKeyCodes.h"
#include "Platform/Gtk/PortalRequest.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/LogText.h"
#include "platform/BundleInfo.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr const char* shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* registryInterface = "org.freedesktop.host.portal.Registry";

void logPortal(const std::string& message) { debugLog("PortalHotKeyGrabs", "bind()", message); }

HotKeyNotice::Command command(const char* what, const char* action) {
  return {what, std::string("gapplication action ") + bundle::identifier + " " + action};
}

/// A combination as the portal writes it; empty for a key that has no name.
std::string triggerOf(HotKeyCombination combination) {
  const auto keycode = placeOf(combination.keyCode, charactersOf(gdk_display_get_default(), 0));
  guint keyval = 0;
  if (!keycode || !gdk_display_translate_key(gdk_display_get_default(), *keycode, GdkModifierType(0), 0,
                                             &keyval, nullptr, nullptr, nullptr)) {
    return {};
  }
  const char* name = gdk_keyval_name(keyval);
  if (name == nullptr) return {};
  std::string trigger;
  if ((combination.modifiers & carbon::cmdKey) != 0) trigger += "CTRL+";
  if ((combination.modifiers & carbon::optionKey) != 0) trigger += "ALT+";
  if ((combination.modifiers & carbon::shiftKey) != 0) trigger += "SHIFT+";
  if ((combination.modifiers & carbon::controlKey) != 0) trigger += "LOGO+";
  return trigger + name;
}

std::string textIn(GVariant* dictionary, const char* key) {
  const GVariantPtr value(g_variant_lookup_value(dictionary, key, nullptr));
  // Handles come as texts or as paths.
  const bool isText = value && (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) ||
                                g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH));
  return isText ? g_variant_get_string(value.get(), nullptr) : "";
}

guint32 versionIn(GVariant* propertyReply) {
  if (!g_variant_is_of_type(propertyReply, G_VARIANT_TYPE("(v)"))) return 0;
  GVariant* raw = nullptr;
  g_variant_get(propertyReply, "(v)", &raw);
  const GVariantPtr value(raw);
  return g_variant_is_of_type(raw, G_VARIANT_TYPE_UINT32) ? g_variant_get_uint32(raw) : 0;
}

GVariant* options(std::initializer_list<std::pair<const char*, const char*>> entries) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto& [key, value] : entries)
    g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(value));
  return g_variant_builder_end(&builder);
}

/// {name: details} of an answer's list of shortcuts.
std::map<std::string, GVariantPtr> shortcutsIn(GVariant* results) {
  std::map<std::string, GVariantPtr> found;
  const GVariantPtr list(g_variant_lookup_value(results, "shortcuts", G_VARIANT_TYPE("a(sa{sv})")));
  if (!list) return found;
  for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
    const char* name = nullptr;
    GVariant* details = nullptr;
    g_variant_get_child(list.get(), i, "(&s@a{sv})", &name, &details);
    found.insert_or_assign(name, GVariantPtr(details));
  }
  return found;
}

}  // namespace

PortalHotKeyGrabs::PortalHotKeyGrabs(Surroundings surroundings, OnKey onKey)
    : surroundings_(std::move(surroundings)), onKey_(std::move(onKey)) {}

PortalHotKeyGrabs::~PortalHotKeyGrabs() {
  isAlive_.end();
  closeSession();
  if (watch_ != 0) g_bus_unwatch_name(watch_);
}

bool PortalHotKeyGrabs::isNeeded() { return isWaylandSession(); }

OSStatus PortalHotKeyGrabs::grab(HotKeyCombination combination) {
  held_.insert(combination);
  bindLater();
  return noErr;
}

void PortalHotKeyGrabs::ungrab(HotKeyCombination combination) {
  held_.erase(combination);
  bindLater();
}

void PortalHotKeyGrabs::describe(HotKeyCombination combination, std::string_view name,
                                 std::string_view title) {
  shortcuts_.insert_or_assign(std::string(name), Shortcut{combination, std::string(title)});
  bindLater();
}

std::set<std::string> PortalHotKeyGrabs::wantedNames() const {
  std::set<std::string> names;
  for (const auto& [name, shortcut] : shortcuts_) {
    if (held_.contains(shortcut.combination)) names.insert(name);
  }
  return names;
}

void PortalHotKeyGrabs::bindLater() {
  // Once for all the shortcuts of one turn: the user is asked about all of them together.
  if (std::exchange(isBindingPlanned_, true)) return;
  DispatchQueue::main().async([this, alive = isAlive_.watch()] {
    if (!alive) return;
    surroundings_.whenToolkitReady([this, alive] {
      if (!alive) return;
      isBindingPlanned_ = false;
      bind();
    });
  });
}

void PortalHotKeyGrabs::bind() {
  auto names = wantedNames();
  // A desktop binds the shortcuts of one session once; what keys they have is then the user's business.
  if (names == sessionNames_) return;
  closeSession();
  sessionNames_ = std::move(names);
  if (sessionNames_.empty()) return;
  connection_ = GObjectPtr<GDBusConnection>::retain(surroundings_.connection());
  if (!connection_) {
    fail("there is no D-Bus session");
    return;
  }
  if (watch_ == 0) {
    watch_ = g_bus_watch_name_on_connection(
        connection_.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, gpointer self) {
          static_cast<PortalHotKeyGrabs*>(self)->portalChanged(true);
        },
        [](GDBusConnection*, const char*, gpointer self) {
          static_cast<PortalHotKeyGrabs*>(self)->portalChanged(false);
        },
        this, nullptr);
  }
  registerWithHost();
}

void PortalHotKeyGrabs::portalChanged(bool isThere) {
  if (!isThere) {
    // Also told at the beginning, where nobody has needed the portal yet.
    wasPortalLost_ = !session_.empty();
    return;
  }
  if (!std::exchange(wasPortalLost_, false)) return;
  closeSession();
  bindLater();
}

void PortalHotKeyGrabs::registerWithHost() {
  // A portal that is too old for this knows the program by its systemd unit, or not at all: no harm.
  call(portalPath, registryInterface, "Register", g_variant_new("(s@a{sv})", bundle::identifier, options({})),
       [this](GVariant*, const char*) {
         call(portalPath, "org.freedesktop.DBus.Properties", "Get",
              g_variant_new("(ss)", shortcutsInterface, "version"),
              [this](GVariant* reply, const char* error) {
                if (reply == nullptr) {
                  fail(error);
                } else {
                  portalVersion_ = versionIn(reply);
                  createSession();
                }
              });
       });
}

void PortalHotKeyGrabs::createSession() {
  request(
      "CreateSession",
      [this](const char* token) {
        // Some portals take the shortcuts here, and have nothing to bind later.
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
        g_variant_builder_add(&builder, "{sv}", "handle_token", g_variant_new_string(token));
        g_variant_builder_add(&builder, "{sv}", "session_handle_token", g_variant_new_string(token));
        g_variant_builder_add(&builder, "{sv}", "shortcuts", shortcutList());
        return g_variant_new("(@a{sv})", g_variant_builder_end(&builder));
      },
      [this](GVariant* results) {
        if (results != nullptr) session_ = textIn(results, "session_handle");
        if (session_.empty()) {
          fail("the desktop opens no session for them");
          return;
        }
        listen(shortcutsInterface, "Activated", portalPath,
               [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                  gpointer self) { static_cast<PortalHotKeyGrabs*>(self)->onActivated(parameters, true); });
        listen(shortcutsInterface, "Deactivated", portalPath,
               [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                  gpointer self) { static_cast<PortalHotKeyGrabs*>(self)->onActivated(parameters, false); });
        listShortcuts();
      });
}

void PortalHotKeyGrabs::listShortcuts() {
  request(
      "ListShortcuts",
      [this](const char* token) {
        return g_variant_new("(o@a{sv})", session_.c_str(), options({{"handle_token", token}}));
      },
      [this](GVariant* results) {
        // Some desktops remember the user's answer and need not be asked again.
        if (results != nullptr) {
          const auto known = shortcutsIn(results);
          const bool knowsAll = std::all_of(sessionNames_.begin(), sessionNames_.end(),
                                            [&](const auto& name) { return known.contains(name); });
          if (knowsAll) {
            noteBound(results);
            return;
          }
        }
        bindShortcuts();
      });
}

GVariant* PortalHotKeyGrabs::shortcutList() const {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE("a(sa{sv})"));
  for (const auto& name : sessionNames_) {
    const auto& shortcut = shortcuts_.at(name);
    const auto trigger = triggerOf(shortcut.combination);
    auto* details =
        trigger.empty()
            ? options({{"description", shortcut.title.c_str()}})
            : options({{"description", shortcut.title.c_str()}, {"preferred_trigger", trigger.c_str()}});
    g_variant_builder_add(&list, "(s@a{sv})", name.c_str(), details);
  }
  return g_variant_builder_end(&list);
}

void PortalHotKeyGrabs::bindShortcuts() {
  request(
      "BindShortcuts",
      [this](const char* token) {
        return g_variant_new("(o@a(sa{sv})s@a{sv})", session_.c_str(), shortcutList(), "",
                             options({{"handle_token", token}}));
      },
      [this](GVariant* results) {
        if (results == nullptr) {
          fail("they were not allowed");
          return;
        }
        noteBound(results);
        const bool hasAll = std::all_of(sessionNames_.begin(), sessionNames_.end(),
                                        [this](const auto& name) { return triggers_.contains(name); });
        if (!hasAll) fail("the desktop has bound only some of them, or none");
      });
}

void PortalHotKeyGrabs::noteBound(GVariant* results) {
  notice_.reset();
  triggers_.clear();
  for (const auto& [name, details] : shortcutsIn(results)) {
    const auto trigger = textIn(details.get(), "trigger_description");
    triggers_[std::string(name)] = trigger;
    logPortal("The desktop has bound " + forLog(name) + (trigger.empty() ? "" : " to " + forLog(trigger)));
  }
}

std::optional<std::string> PortalHotKeyGrabs::grantedTrigger(std::string_view name) {
  const auto found = triggers_.find(name);
  return found == triggers_.end() ? std::string() : found->second;
}

std::function<void()> PortalHotKeyGrabs::settingsOpener() {
  // Since then the portal itself shows what it has bound for a program.
  constexpr guint32 firstWithDialogue = 2;
  if (portalVersion_ < firstWithDialogue || session_.empty() || notice_) return desktopKeySettings();
  return [this, alive = isAlive_.watch()] {
    if (!alive || session_.empty()) return;
    call(portalPath, shortcutsInterface, "ConfigureShortcuts",
         g_variant_new("(os@a{sv})", session_.c_str(), "", options({})),
         [](GVariant* reply, const char* error) {
           if (reply != nullptr) return;
           logPortal("The portal has no settings to show: " + forLog(error));
           if (const auto open = desktopKeySettings()) open();
         });
  };
}

void PortalHotKeyGrabs::fail(const std::string& reason) {
  notice_ = HotKeyNotice{
      "This desktop gives Velkin no global shortcuts. In its keyboard settings you can bind keys to these "
      "commands:",
      {command("Open or close the popover", "toggle-popover"),
       command("Open or close the search bar", "toggle-search")}};
  logPortal("There are no global shortcuts: " + forLog(reason) +
            ". In the desktop's keyboard settings, keys can be bound to:");
  for (const auto& each : notice_->commands) logPortal("  " + each.what + ": " + each.commandLine);
}

void PortalHotKeyGrabs::closeSession() {
  // Whatever was asked for before this is answered in vain.
  ++generation_;
  for (const auto signal : std::exchange(signals_, {}))
    g_dbus_connection_signal_unsubscribe(connection_.get(), signal);
  sessionNames_.clear();
  const auto session = std::exchange(session_, {});
  if (!session.empty()) {
    g_dbus_connection_call(connection_.get(), portalName, session.c_str(), sessionInterface, "Close", nullptr,
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
  }
}

void PortalHotKeyGrabs::call(const char* path, const char* interface, const char* method,
                             GVariant* parameters, OnReply onReply) {
  struct Pending {
    Alive::Watch alive;
    int* presentGeneration;
    int generation;
    OnReply onReply;
  };
  auto pending =
      std::make_unique<Pending>(Pending{isAlive_.watch(), &generation_, generation_, std::move(onReply)});
  g_dbus_connection_call(
      connection_.get(), portalName, path, interface, method, parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
      nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Pending> waiting(static_cast<Pending*>(data));
        GError* raw = nullptr;
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raw));
        const GErrorPtr error(raw);
        if (!waiting->alive || *waiting->presentGeneration != waiting->generation) return;
        waiting->onReply(reply.get(), error ? error->message : "");
      },
      pending.release());
}

void PortalHotKeyGrabs::request(const char* method,
                                const std::function<GVariant*(const char* token)>& parameters,
                                OnResponse onResponse) {
  const auto token = "velkin" + std::to_string(++requests_);
  // The request's path is known before the call, so that its answer can't come too early.
  std::string sender = g_dbus_connection_get_unique_name(connection_.get());
  sender.erase(0, 1);
  std::replace(sender.begin(), sender.end(), '.', '_');
  const auto path = std::string(portalPath) + "/request/" + sender + "/" + token;

  struct Answer {
    PortalHotKeyGrabs* self;
    OnResponse onResponse;
    bool isGiven = false;
  };
  auto answer = std::make_shared<Answer>(Answer{this, std::move(onResponse)});
  signals_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), portalName, requestInterface, "Response", path.c_str(), nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* response,
         gpointer data) {
        // Kept: the answer may end the session, and with it this subscription.
        const auto kept = *static_cast<std::shared_ptr<Answer>*>(data);
        if (std::exchange(kept->isGiven, true) ||
            !g_variant_is_of_type(response, G_VARIANT_TYPE("(ua{sv})"))) {
          return;
        }
        guint32 status = 0;
        GVariant* results = nullptr;
        g_variant_get(response, "(u@a{sv})", &status, &results);
        const GVariantPtr held(results);
        kept->onResponse(status == 0 ? results : nullptr);
      },
      std::make_unique<std::shared_ptr<Answer>>(answer).release(),
      [](gpointer data) {
        std::default_delete<std::shared_ptr<Answer>>()(static_cast<std::shared_ptr<Answer>*>(data));
      }));
  call(portalPath, shortcutsInterface, method, parameters(token.c_str()),
       [answer](GVariant* reply, const char* error) {
         if (reply != nullptr || std::exchange(answer->isGiven, true)) return;
         logPortal(forLog(error));
         answer->onResponse(nullptr);
       });
}

void PortalHotKeyGrabs::listen(const char* interface, const char* signal, const char* path,
                               GDBusSignalCallback callback) {
  signals_.push_back(g_dbus_connection_signal_subscribe(connection_.get(), portalName, interface, signal,
                                                        path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, callback,
                                                        this, nullptr));
}

void PortalHotKeyGrabs::onActivated(GVariant* parameters, bool isDown) {
  if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(osta{sv})"))) return;
  const char* session = nullptr;
  const char* name = nullptr;
  guint64 time = 0;
  GVariant* raw = nullptr;
  g_variant_get(parameters, "(&o&st@a{sv})", &session, &name, &time, &raw);
  const GVariantPtr details(raw);
  const auto found = shortcuts_.find(name);
  if (session != session_ || found == shortcuts_.end() || !held_.contains(found->second.combination)) return;
  // The time is the desktop's own and not that of X; its token says the same better.
  onKey_(found->second.combination, isDown, {0, textIn(details.get(), "activation_token")});
}

}  // namespace platform
