#include "Platform/Gtk/WebEngine.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/IsolatedPage.h"
#include "Platform/Gtk/ProgramFolders.h"
#include "Platform/LogText.h"
#include "Platform/NSWorkspace.h"
#include "Platform/UnusedFileName.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace platform {

namespace {

/// Where pictures are computed by the processor, a graphics context in each web process is memory for
/// nothing.
bool hasGraphicsHardware() {
  if (const char* forced = std::getenv("LIBGL_ALWAYS_SOFTWARE"); forced != nullptr && *forced == '1')
    return false;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
    if (entry.path().filename().string().starts_with("renderD")) return true;
  }
  return false;
}

std::filesystem::path downloadFolder() {
  const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
  return folder != nullptr ? std::filesystem::path(folder)
                           : std::filesystem::path(g_get_home_dir()) / "Downloads";
}

/// What is known of a download while it runs.
struct RunningDownload {
  WebEngine* engine;
  std::filesystem::path file;
  bool hasFailed = false;
  /// The notice of its beginning, which is old news at its end.
  std::shared_ptr<void> beginning;

  void start(WebKitDownload* download, const std::string& suggestion) {
    const auto unused = reserveUnusedFile(downloadFolder(), suggestion);
    if (!unused) {
      webkit_download_cancel(download);
      return;
    }
    file = *unused;
    // The file there is the empty one that keeps the name.
    webkit_download_set_allow_overwrite(download, TRUE);
    webkit_download_set_destination(download, file.c_str());
    beginning = engine->popover().toasts().showUntil("Downloading “" + file.filename().string() + "”");
  }

  void tellEnd(const std::string& text, const std::string& button, std::function<void()> action) {
    beginning.reset();
    if (engine->popover().isShown()) {
      engine->popover().toasts().show(text, button, std::move(action));
    } else {
      NSWorkspace::shared().deliver(
          {.title = text, .informativeText = {}, .actionButtonTitle = button, .action = std::move(action)});
    }
  }
};

/// The engine's sandbox looks for the compositor's socket in the user's runtime folder only, and without it
/// the engine ends the program.
void letReachTheDisplay(WebKitWebContext* context) {
  if (const char* socket = std::getenv("WAYLAND_DISPLAY"); socket != nullptr && *socket == '/')
    webkit_web_context_add_path_to_sandbox(context, socket, TRUE);
}

}  // namespace

WebEngine::WebEngine(PopoverWindow& (*popoverOfProgram)())
    : popover_(popoverOfProgram),
      permissions_(ProgramFolders::userData() / "site-permissions.json"),
      context_(GObjectPtr<WebKitWebContext>::adopt(webkit_web_context_new())) {
  letReachTheDisplay(context_.get());
  const auto languages = spellingLanguages(g_get_language_names());
  std::vector<const char*> names;
  names.reserve(languages.size() + 1);
  for (const auto& language : languages) names.push_back(language.c_str());
  names.push_back(nullptr);
  webkit_web_context_set_spell_checking_languages(context_.get(), names.data());
  webkit_web_context_set_spell_checking_enabled(context_.get(), languages.empty() ? FALSE : TRUE);
  GList* allowed = nullptr;
  GList* refused = nullptr;
  for (const auto& [key, isAllowed] : permissions_.all()) {
    if (key.second != "notifications") continue;
    auto& list = isAllowed ? allowed : refused;
    list = g_list_prepend(list, webkit_security_origin_new_for_uri(key.first.c_str()));
  }
  webkit_web_context_initialize_notification_permissions(context_.get(), allowed, refused);
  const auto unref =
      +[](gpointer origin) { webkit_security_origin_unref(static_cast<WebKitSecurityOrigin*>(origin)); };
  g_list_free_full(allowed, unref);
  g_list_free_full(refused, unref);
}

WebEngine::~WebEngine() {
  for (auto* session : {persistent_.get(), ephemeral_.get()}) {
    if (session != nullptr) g_signal_handlers_disconnect_by_data(session, this);
  }
}

WebKitWebContext* WebEngine::isolatedContext() {
  if (!isolatedContext_) {
    isolatedContext_ = GObjectPtr<WebKitWebContext>::adopt(makeIsolatedContext());
    letReachTheDisplay(isolatedContext_.get());
  }
  return isolatedContext_.get();
}

std::vector<std::string> WebEngine::spellingLanguages(const char* const* names) {
  std::vector<std::string> languages;
  for (; *names != nullptr; ++names) {
    std::string name = *names;
    // Dictionaries know nothing of encodings, and "C" is no language.
    name.resize(std::min(name.find_first_of(".@"), name.size()));
    if (name.empty() || name == "C" || name == "POSIX") continue;
    if (std::find(languages.begin(), languages.end(), name) == languages.end()) languages.push_back(name);
  }
  return languages;
}

bool WebEngine::canSandbox(std::string& reason) {
  // The engine itself would end the program at the first page.
  if (const char* off = std::getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS");
      off != nullptr && *off == '1') {
    return true;
  }
  const char* command[] = {"bwrap", "--ro-bind", "/", "/", "true", nullptr};
  char* output = nullptr;
  GError* raw = nullptr;
  int status = 0;
  const bool isStarted = g_spawn_sync(nullptr, const_cast<char**>(command), nullptr,
                                      GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL), nullptr,
                                      nullptr, nullptr, &output, &status, &raw) != FALSE;
  const GErrorPtr error(raw);
  const GStringPtr text(output);
  if (!isStarted) {
    reason = error->message;
    return false;
  }
  if (g_spawn_check_wait_status(status, nullptr)) return true;
  reason = g_strchomp(text.get());
  return false;
}

WebKitNetworkSession* WebEngine::session(bool isPersistent) {
  auto& session = isPersistent ? persistent_ : ephemeral_;
  if (session) return session.get();
  if (!isPersistent) {
    session = GObjectPtr<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
  } else {
    const auto data = ProgramFolders::userData();
    std::error_code error;
    std::filesystem::create_directories(data, error);
    if (error) debugLog("WebEngine", "session(isPersistent:)", data.string() + ": " + error.message());
    // Logins are in here.
    std::filesystem::permissions(data, std::filesystem::perms::owner_all, error);
    session = GObjectPtr<WebKitNetworkSession>::adopt(
        webkit_network_session_new(data.c_str(), ProgramFolders::userCache().c_str()));
    webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session.get()),
                                                 (data / "cookies.sqlite").c_str(),
                                                 WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  }
  watchDownloads(session.get());
  return session.get();
}

WebKitNetworkSession* WebEngine::sessionToNowhere() {
  if (nowhere_) return nowhere_.get();
  nowhere_ = GObjectPtr<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
  // Of the ports that only root can listen on, the first: nothing answers there, so nothing is asked.
  auto* proxy = webkit_network_proxy_settings_new("http://127.0.0.1:1", nullptr);
  webkit_network_session_set_proxy_settings(nowhere_.get(), WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
  webkit_network_proxy_settings_free(proxy);
  return nowhere_.get();
}

GObjectPtr<WebKitSettings> WebEngine::makeSettings() const {
  auto settings = GObjectPtr<WebKitSettings>::adopt(webkit_settings_new());
  static const bool usesGraphics = hasGraphicsHardware();
  webkit_settings_set_hardware_acceleration_policy(
      settings.get(),
      usesGraphics ? WEBKIT_HARDWARE_ACCELERATION_POLICY_ALWAYS : WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  webkit_settings_set_enable_media_stream(settings.get(), TRUE);
  return settings;
}

void WebEngine::watchDownloads(WebKitNetworkSession* session) {
  g_signal_connect(session, "download-started",
                   G_CALLBACK(+[](WebKitNetworkSession*, WebKitDownload* download, gpointer self) {
                     static_cast<WebEngine*>(self)->downloadStarted(download);
                   }),
                   this);
}

void WebEngine::downloadStarted(WebKitDownload* download) {
  auto* running = std::make_unique<RunningDownload>(RunningDownload{this, {}, false, nullptr}).release();
  g_object_set_data_full(G_OBJECT(download), "velkin-download", running, [](gpointer data) {
    std::default_delete<RunningDownload>()(static_cast<RunningDownload*>(data));
  });
  g_signal_connect(download, "decide-destination",
                   G_CALLBACK(+[](WebKitDownload* d, const char* suggestion, gpointer data) -> gboolean {
                     auto& self = *static_cast<RunningDownload*>(data);
                     const std::string name = suggestion != nullptr ? suggestion : "";
                     self.engine->admitDownload(d, [&self, d, name] { self.start(d, name); });
                     return TRUE;
                   }),
                   running);
  g_signal_connect(
      download, "failed", G_CALLBACK(+[](WebKitDownload*, GError* error, gpointer data) {
        auto& self = *static_cast<RunningDownload*>(data);
        self.hasFailed = true;
        self.beginning.reset();
        // One that the user or the page's end refused is no news.
        if (g_error_matches(error, WEBKIT_DOWNLOAD_ERROR, WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER) &&
            self.file.empty()) {
          return;
        }
        std::error_code ignored;
        if (!self.file.empty()) std::filesystem::remove(self.file, ignored);
        debugLog("WebEngine", "downloadStarted(_:)", forLog(error->message));
        self.tellEnd("The download failed: " + std::string(error->message), {}, {});
      }),
      running);
  g_signal_connect(download, "finished", G_CALLBACK(+[](WebKitDownload*, gpointer data) {
                     auto& self = *static_cast<RunningDownload*>(data);
                     if (self.hasFailed) return;
                     const auto text = "Downloaded “" + self.file.filename().string() + "”";
                     if (!self.engine->popover().isShown()) {
                       // Who has gone elsewhere is shown where the file is.
                       self.tellEnd(text, "Show", [file = self.file] {
                         NSWorkspace::shared().activateFileViewerSelecting(file.string());
                       });
                       return;
                     }
                     self.tellEnd(text, "Open", [file = self.file] {
                       const GStringPtr uri(g_filename_to_uri(file.c_str(), nullptr, nullptr));
                       const auto url = URL::parse(uri ? uri.get() : "");
                       if (url) NSWorkspace::shared().open(*url);
                     });
                   }),
                   running);
}

}  // namespace platform
