#include "Platform/Gtk/GtkWebView.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/IsolatedPage.h"
#include "Platform/Gtk/KeyboardPlaces.h"
#include "Platform/Gtk/PageDialogues.h"
#include "Platform/Gtk/PageFiles.h"
#include "Platform/Gtk/PageNotices.h"
#include "Platform/Gtk/PageQuestions.h"
#include "Platform/Gtk/WebViewManners.h"
#include "Platform/LogText.h"
#include "Platform/UTF8.h"

#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace platform {

namespace {

NSError errorFrom(const GError& error) {
  return {g_quark_to_string(error.domain), error.code, error.message};
}

/// Set at the entries of the history that came as the answer to a form.
constexpr const char* formAnswerKey = "velkin-form-answer";

bool isAnswerToForm(WebKitWebView* view) {
  auto* item = webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view));
  return item != nullptr && g_object_get_data(G_OBJECT(item), formAnswerKey) != nullptr;
}

WKNavigationType navigationTypeOf(WebKitNavigationAction* action) {
  switch (webkit_navigation_action_get_navigation_type(action)) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
      return webkit_navigation_action_is_user_gesture(action) ? WKNavigationType::linkActivated
                                                              : WKNavigationType::other;
    case WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED:
      return WKNavigationType::formSubmitted;
    case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
      return WKNavigationType::backForward;
    case WEBKIT_NAVIGATION_TYPE_RELOAD:
      return WKNavigationType::reload;
    case WEBKIT_NAVIGATION_TYPE_FORM_RESUBMITTED:
      return WKNavigationType::formResubmitted;
    case WEBKIT_NAVIGATION_TYPE_OTHER:
      break;
  }
  return WKNavigationType::other;
}

/// What the engine keeps below a view has got the keyboard: by Tab from the page, behind its last control, or
/// by Shift+Tab from what stands behind the view. Neither means to stay there.
void handOnKeyboard(GtkWidget* hidden) {
  if (!gtk_widget_has_focus(hidden)) return;
  // In a later turn: the toolkit is in the middle of moving it.
  DispatchQueue::main().async(
      [kept = GObjectPtr<GtkWidget>::retain(hidden), isBackward = wasLastTabBackward()] {
        auto* root = gtk_widget_get_root(kept.get());
        if (root == nullptr || gtk_root_get_focus(root) != kept.get()) return;
        if (!isBackward) gtk_widget_child_focus(GTK_WIDGET(root), GTK_DIR_TAB_FORWARD);
        if (gtk_root_get_focus(root) == kept.get()) gtk_widget_grab_focus(gtk_widget_get_parent(kept.get()));
      });
}

/// The engine translates keys by a text view that it keeps below its own and never shows. The cursor in there
/// would blink all the same: for ten seconds after each key the window would go through sixty frames a
/// second, and a frame that is needed would wait for its turn. And the keyboard would come there behind the
/// page's last control, and Tab never lead away.
void tameHiddenText(WebKitWebView* view) {
  for (GtkWidget* child = gtk_widget_get_first_child(GTK_WIDGET(view)); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (!GTK_IS_TEXT_VIEW(child)) continue;
    gtk_text_view_set_cursor_visible(GTK_TEXT_VIEW(child), FALSE);
    // Nor is it anything for a screen reader.
    g_object_set(child, "accessible-role", GTK_ACCESSIBLE_ROLE_NONE, nullptr);
    g_signal_connect(child, "notify::has-focus",
                     G_CALLBACK(+[](GtkWidget* hidden, GParamSpec*, gpointer) { handOnKeyboard(hidden); }),
                     nullptr);
  }
}

/// The buttons at the side of a mouse, as X counts them.
constexpr guint backButton = 8;
constexpr guint forwardButton = 9;

void followSideButtons(WebKitWebView* view) {
  GtkEventController* buttons = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(buttons, GTK_PHASE_CAPTURE);
  g_signal_connect(buttons, "event",
                   G_CALLBACK(+[](GtkEventControllerLegacy*, GdkEvent* event, gpointer page) -> gboolean {
                     const auto type = gdk_event_get_event_type(event);
                     if (type != GDK_BUTTON_PRESS && type != GDK_BUTTON_RELEASE) return FALSE;
                     const auto button = gdk_button_event_get_button(event);
                     if (button != backButton && button != forwardButton) return FALSE;
                     if (type == GDK_BUTTON_RELEASE) return TRUE;
                     if (button == backButton) {
                       webkit_web_view_go_back(WEBKIT_WEB_VIEW(page));
                     } else {
                       webkit_web_view_go_forward(WEBKIT_WEB_VIEW(page));
                     }
                     return TRUE;
                   }),
                   view);
  gtk_widget_add_controller(GTK_WIDGET(view), buttons);
}

int pixelsOf(double inches) {
  constexpr double pixelsPerInch = 96;
  return static_cast<int>(std::lround(inches * pixelsPerInch));
}

struct ScriptRun {
  WKWebView::ScriptCompletion completion;
};

void scriptEnded(GObject* source, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<ScriptRun> run(static_cast<ScriptRun*>(data));
  GError* raw = nullptr;
  const auto value = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &raw));
  const GErrorPtr error(raw);
  if (!run->completion) return;
  if (error) {
    run->completion(std::nullopt, errorFrom(*error));
    return;
  }
  const GStringPtr json(jsc_value_to_json(value.get(), 0));
  run->completion(json ? std::string(json.get()) : std::string(), std::nullopt);
}

/// The engine draws nothing at all at a zoom that is no more than nothing, as a settings file may hold it.
double engineZoom(double zoom) { return zoom > 0 ? zoom : 1; }

/// Closes the page of a view that something still holds: a script of ours that waits for a frame does so for
/// ever once the page is off the screen, and would keep the view and its process. In a later turn, since who
/// waits for a script is told then, which must not happen within a destructor.
void closeLater(WebKitWebView* view) {
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer held) -> gboolean {
        g_object_run_dispose(G_OBJECT(held));
        return G_SOURCE_REMOVE;
      },
      g_object_ref(view), g_object_unref);
}

}  // namespace

GtkWebView::GtkWebView(NSRect frame, WKWebViewConfiguration configuration, WebEngine& (*engine)())
    : frame_(frame), configuration_(std::move(configuration)), engine_(engine) {}

GtkWebView::~GtkWebView() {
  isAlive_.end();
  g_cancellable_cancel(cancellable_.get());
  loadWatch_.reset();
  auto* left = view_.get();
  if (view_) {
    if (configuration_.processPool) std::erase(configuration_.processPool->views, view_.get());
    g_signal_handlers_disconnect_by_data(view_.get(), this);
    if (userContent_) g_signal_handlers_disconnect_by_data(userContent_.get(), this);
    g_object_add_weak_pointer(G_OBJECT(left), reinterpret_cast<gpointer*>(&left));
    // A window may hold the box for longer.
    if (holder_) gtk_box_remove(GTK_BOX(holder_.get()), GTK_WIDGET(view_.get()));
    view_ = {};
  }
  if (holder_) {
    g_signal_handlers_disconnect_by_data(holder_.get(), this);
    if (GtkWidget* parent = gtk_widget_get_parent(holder_.get()); parent != nullptr && GTK_IS_BOX(parent)) {
      gtk_box_remove(GTK_BOX(parent), holder_.get());
    }
  }
  if (left != nullptr) {
    g_object_remove_weak_pointer(G_OBJECT(left), reinterpret_cast<gpointer*>(&left));
    closeLater(left);
  }
}

GtkWidget* GtkWebView::widget() {
  if (!holder_) {
    holder_ = GObjectPtr<GtkWidget>::retain(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
    g_signal_connect_swapped(holder_.get(), "map", G_CALLBACK(+[](GtkWebView* self) { self->onMapped(); }),
                             this);
    if (view_) gtk_box_append(GTK_BOX(holder_.get()), GTK_WIDGET(view_.get()));
  }
  return holder_.get();
}

WebKitWebView* GtkWebView::engineView() {
  if (view_) return view_.get();
  auto& engine = engine_();
  settings_ = engine.makeSettings();
  webkit_settings_set_enable_developer_extras(settings_.get(),
                                              configuration_.preferences.developerExtrasEnabled);
  webkit_settings_set_enable_javascript(settings_.get(),
                                        configuration_.defaultWebpagePreferences.allowsContentJavaScript);
  webkit_settings_set_enable_back_forward_navigation_gestures(settings_.get(), allowsGestures_);
  if (!userAgent_.empty()) webkit_settings_set_user_agent(settings_.get(), userAgent_.c_str());
  userContent_ = GObjectPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new());
  addUserContent();
  const bool isIsolated = configuration_.isIsolated;
  auto* session = isIsolated && !configuration_.isolatedPictures
                      ? engine.sessionToNowhere()
                      : engine.session(!isIsolated && configuration_.usesPersistentDataStore);
  const auto policy = isIsolated ? isolatedContentSecurityPolicy(configuration_.isolatedScripts,
                                                                 configuration_.isolatedPictures)
                                 : std::string();
  if (isIsolated) isolateSettings(settings_.get());
  const char* const contentPolicy = isIsolated ? policy.c_str() : nullptr;
  const auto& pool = configuration_.processPool;
  WebKitWebView* made = nullptr;
  if (pool && !pool->views.empty()) {
    // A related view takes session and context from the other one.
    made = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", pool->views.front(), "settings",
                                        settings_.get(), "user-content-manager", userContent_.get(),
                                        "default-content-security-policy", contentPolicy, nullptr));
  } else {
    made = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, "web-context",
                                        isIsolated ? engine.isolatedContext() : engine.context(), "settings",
                                        settings_.get(), "user-content-manager", userContent_.get(),
                                        "default-content-security-policy", contentPolicy, nullptr));
  }
  view_ = GObjectPtr<WebKitWebView>::retain(made);
  if (pool) pool->views.push_back(made);
  tameHiddenText(view_.get());
  webkit_web_view_set_zoom_level(view_.get(), engineZoom(zoom_));
  gtk_widget_set_hexpand(GTK_WIDGET(view_.get()), TRUE);
  gtk_widget_set_vexpand(GTK_WIDGET(view_.get()), TRUE);
  connectSignals();
  if (isIsolated) {
    isolatePage(view_.get());
    // Until the page has painted itself, what is behind it shows: no flash of white in a dark window.
    constexpr GdkRGBA clear = {0, 0, 0, 0};
    webkit_web_view_set_background_color(view_.get(), &clear);
  } else {
    followSideButtons(view_.get());
    teachManners(view_.get(), engine);
  }
  if (holder_) gtk_box_append(GTK_BOX(holder_.get()), GTK_WIDGET(view_.get()));
  return view_.get();
}

void GtkWebView::addUserContent() {
  const auto& content = configuration_.userContentController;
  for (const auto& script : content.userScripts) {
    auto* userScript =
        webkit_user_script_new(script.source.c_str(),
                               script.forMainFrameOnly ? WEBKIT_USER_CONTENT_INJECT_TOP_FRAME
                                                       : WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                               script.injectionTime == WKUserScript::InjectionTime::atDocumentStart
                                   ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                                   : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END,
                               nullptr, nullptr);
    webkit_user_content_manager_add_script(userContent_.get(), userScript);
    webkit_user_script_unref(userScript);
  }
  for (const auto& [name, handler] : content.messageHandlers) {
    struct Receiver {
      std::string name;
      WKScriptMessageHandler* handler;
    };
    // Connected before the name is registered, or the first message could be lost.
    g_signal_connect_data(
        userContent_.get(), ("script-message-received::" + name).c_str(),
        G_CALLBACK(+[](WebKitUserContentManager*, JSCValue* value, gpointer data) {
          const auto& receiver = *static_cast<Receiver*>(data);
          const GStringPtr json(jsc_value_to_json(value, 0));
          receiver.handler->didReceiveScriptMessage(receiver.name, json ? json.get() : "");
        }),
        std::make_unique<Receiver>(Receiver{name, handler}).release(),
        [](gpointer data, GClosure*) { std::default_delete<Receiver>()(static_cast<Receiver*>(data)); },
        GConnectFlags(0));
    webkit_user_content_manager_register_script_message_handler(userContent_.get(), name.c_str(), nullptr);
  }
}

void GtkWebView::connectSignals() {
  // Before the page's manners, which have the second word.
  g_signal_connect(view_.get(), "decide-policy",
                   G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision,
                                  WebKitPolicyDecisionType type, gpointer self) -> gboolean {
                     return static_cast<GtkWebView*>(self)->isNavigationCancelled(decision, type);
                   }),
                   this);
  g_signal_connect(view_.get(), "notify::uri",
                   G_CALLBACK(+[](WebKitWebView* view, GParamSpec*, gpointer self) {
                     const char* uri = webkit_web_view_get_uri(view);
                     if (uri == nullptr) return;
                     if (auto url = URL::parseReported(uri))
                       static_cast<GtkWebView*>(self)->url_ = std::move(url);
                   }),
                   this);
  g_signal_connect(view_.get(), "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     static_cast<GtkWebView*>(self)->loadChanged(event);
                   }),
                   this);
  g_signal_connect(view_.get(), "notify::is-web-process-responsive",
                   G_CALLBACK(+[](WebKitWebView* view, GParamSpec*, gpointer data) {
                     auto* self = static_cast<GtkWebView*>(data);
                     if (self->awaitedLoad_ && !webkit_web_view_get_is_web_process_responsive(view))
                       self->endProcess();
                   }),
                   this);
  if (!configuration_.isIsolated) {
    loadWatch_ = std::make_unique<LoadWatch>(view_.get());
    loadWatch_->didFail = [this](const std::string&, const GError& error) {
      if (navigationDelegate != nullptr) navigationDelegate->didFail(*this, errorFrom(error));
    };
  }
  g_signal_connect(view_.get(), "web-process-terminated",
                   G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason reason, gpointer self) {
                     static_cast<GtkWebView*>(self)->processTerminated(reason);
                   }),
                   this);
}

void GtkWebView::loadChanged(WebKitLoadEvent event) {
  if (event == WEBKIT_LOAD_STARTED) awaitedLoad_ = nullptr;
  if (event == WEBKIT_LOAD_COMMITTED && std::exchange(isRespondingToForm_, false)) {
    if (auto* item =
            webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view_.get())))
      g_object_set_data(G_OBJECT(item), formAnswerKey, GINT_TO_POINTER(1));
  }
  if (event == WEBKIT_LOAD_COMMITTED || event == WEBKIT_LOAD_FINISHED) {
    awaitsDocument_ = false;
    for (auto& action : std::exchange(waitingForDocument_, {})) whenDocumentIsThere(std::move(action));
  }
  // The wait for a frame keeps its page, so that nothing waits without need.
  if (event == WEBKIT_LOAD_FINISHED && gtk_widget_get_opacity(GTK_WIDGET(view_.get())) < 1) showWhenPainted();
  if (event == WEBKIT_LOAD_FINISHED && navigationDelegate != nullptr) navigationDelegate->didFinish(*this);
}

bool GtkWebView::isNavigationCancelled(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    auto* response = WEBKIT_RESPONSE_POLICY_DECISION(decision);
    if (webkit_response_policy_decision_is_main_frame_main_resource(response)) {
      const char* method =
          webkit_uri_request_get_http_method(webkit_response_policy_decision_get_request(response));
      isRespondingToForm_ = method != nullptr && std::string_view(method) == "POST";
    }
    return false;
  }
  auto* action =
      webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  if (uiDelegate != nullptr && navigationTypeOf(action) == WKNavigationType::reload)
    uiDelegate->didReload(*this);
  if (navigationDelegate == nullptr) return false;
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const auto url = URL::parseReported(uri != nullptr ? uri : "");
  // An isolated page's own rule refuses it then.
  if (!url) return false;
  const auto wanted = WKNavigationAction{*url, navigationTypeOf(action)};
  if (navigationDelegate->decidePolicyFor(*this, wanted) == WKNavigationActionPolicy::allow) return false;
  webkit_policy_decision_ignore(decision);
  return true;
}

void GtkWebView::processTerminated(WebKitWebProcessTerminationReason reason) {
  if (reason == WEBKIT_WEB_PROCESS_TERMINATED_BY_API) {
    if (const auto load = std::exchange(awaitedLoad_, nullptr)) load();
    return;
  }
  awaitedLoad_ = nullptr;
  const bool reloads = crashPolicy_.shouldReload(now());
  if (reloads && uiDelegate != nullptr) uiDelegate->didReload(*this);
  debugLog("GtkWebView", "processTerminated(reason:)",
           "The process of " + addressForLog(url_ ? url_->absoluteString() : "about:blank") + " died; " +
               (reloads ? "loading it again" : "it died too often"));
  if (configuration_.isIsolated) {
    const auto page = reloads ? ownPage_ : crashNotice({});
    webkit_web_view_load_html(view_.get(), page.c_str(), nullptr);
  } else if (reloads) {
    reloadInNewProcess();
  } else {
    showCrashPage();
  }
}

void GtkWebView::reloadInNewProcess() {
  // What was sent by a form isn't sent again without the user's word.
  if (isAnswerToForm(view_.get())) {
    showCrashPage();
  } else {
    webkit_web_view_reload(view_.get());
  }
}

void GtkWebView::showCrashPage() {
  const auto address = url_ ? url_->absoluteString() : std::string("about:blank");
  // As the page of that address: alternate content for it stays blank after its process died.
  webkit_web_view_load_html(view_.get(), crashNotice(address).c_str(), address.c_str());
}

void GtkWebView::startLoad(const std::function<void()>& load, std::function<void()> loadInNewProcess) {
  // A process that doesn't answer would keep the load waiting for ever, and the page with it.
  const bool isHanging = !webkit_web_view_get_is_web_process_responsive(view_.get()) ||
                         (!configuration_.isIsolated && isSilencedAndAsking(view_.get()));
  awaitedLoad_ = std::move(loadInNewProcess);
  if (isHanging) {
    endProcess();
  } else {
    load();
  }
}

void GtkWebView::showWhenPainted() {
  // Frames come only while the view is on the screen; the second one is behind the first painting.
  constexpr const char* twoFrames =
      "return new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => done(1))));";
  webkit_web_view_call_async_javascript_function(
      view_.get(), twoFrames, -1, nullptr, "velkin", nullptr, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer) {
        GError* raw = nullptr;
        const auto value = GObjectPtr<JSCValue>::adopt(
            webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(source), result, &raw));
        const GErrorPtr error(raw);
        // Another page came in between, and is waited for.
        if (value) gtk_widget_set_opacity(GTK_WIDGET(source), 1);
      },
      nullptr);
}

void GtkWebView::endProcess() {
  debugLog("GtkWebView", "endProcess()", "The process of a page doesn't answer; starting another one");
  // What it leads to loads the page.
  webkit_web_view_terminate_web_process(view_.get());
}

NSRect GtkWebView::frame() const {
  if (!holder_ || gtk_widget_get_width(holder_.get()) == 0) return frame_;
  return {{0, 0},
          {static_cast<double>(gtk_widget_get_width(holder_.get())),
           static_cast<double>(gtk_widget_get_height(holder_.get()))}};
}

void GtkWebView::onMapped() {
  auto* view = engineView();
  webkit_web_view_set_zoom_level(view, engineZoom(zoom_));
  if (!std::exchange(wantsFocus_, false)) return;
  noteKeyboardClaim();
  gtk_widget_grab_focus(GTK_WIDGET(view));
}

void GtkWebView::makeFirstResponder() {
  noteKeyboardClaim();
  wantsFocus_ = !view_ || !gtk_widget_get_mapped(GTK_WIDGET(view_.get()));
  if (!wantsFocus_) gtk_widget_grab_focus(GTK_WIDGET(view_.get()));
}

std::optional<URL> GtkWebView::url() const { return url_; }

std::string GtkWebView::title() const {
  const char* title = view_ ? webkit_web_view_get_title(view_.get()) : nullptr;
  return title != nullptr ? title : "";
}

bool GtkWebView::isLoading() const { return view_ && webkit_web_view_is_loading(view_.get()); }

void GtkWebView::load(const URLRequest& request) {
  auto* view = engineView();
  awaitsDocument_ = true;
  url_ = request.url;
  const auto uriRequest =
      GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.absoluteString().c_str()));
  if (SoupMessageHeaders* headers = webkit_uri_request_get_http_headers(uriRequest.get())) {
    for (const auto& [name, value] : request.allHTTPHeaderFields)
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
  }
  const auto start = [view, uriRequest] { webkit_web_view_load_request(view, uriRequest.get()); };
  startLoad(start, start);
}

void GtkWebView::loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) {
  auto* view = engineView();
  url_ = baseURL ? baseURL : URL::parse("about:blank");
  auto page = withoutNulCharacters(html);
  awaitsDocument_ = true;
  // What the view has painted last would come up with the next panel, before anything of the new page does.
  if (configuration_.isIsolated && !configuration_.isolatedPictures) {
    gtk_widget_set_opacity(GTK_WIDGET(view), 0);
  }
  webkit_web_view_load_html(view, page.c_str(), baseURL ? baseURL->absoluteString().c_str() : nullptr);
  // There is no address from which it could be had again when its process dies.
  if (configuration_.isIsolated) ownPage_ = std::move(page);
}

void GtkWebView::reload() {
  if (!view_) return;
  startLoad([this] { webkit_web_view_reload(view_.get()); }, [this] { reloadInNewProcess(); });
}

void GtkWebView::reloadFromOrigin() {
  if (!view_) return;
  startLoad([this] { webkit_web_view_reload_bypass_cache(view_.get()); }, [this] { reloadInNewProcess(); });
}

void GtkWebView::stopLoading() {
  if (view_) webkit_web_view_stop_loading(view_.get());
}

bool GtkWebView::canGoBack() const { return view_ && webkit_web_view_can_go_back(view_.get()); }
bool GtkWebView::canGoForward() const { return view_ && webkit_web_view_can_go_forward(view_.get()); }

void GtkWebView::goBack() {
  if (view_) webkit_web_view_go_back(view_.get());
}

void GtkWebView::goForward() {
  if (view_) webkit_web_view_go_forward(view_.get());
}

void GtkWebView::scrollPageUp() {
  if (view_) webkit_web_view_execute_editing_command(view_.get(), "ScrollPageBackward");
}

void GtkWebView::scrollPageDown() {
  if (view_) webkit_web_view_execute_editing_command(view_.get(), "ScrollPageForward");
}

void GtkWebView::setPageZoom(double zoom) {
  zoom_ = zoom;
  // In a later turn: a page is laid out anew at each zoom, and one that isn't on show or gets another zoom in
  // this turn would be for nothing.
  DispatchQueue::main().async([this, alive = isAlive_.watch()] {
    if (alive) applyZoom();
  });
}

void GtkWebView::applyZoom() {
  if (view_ && gtk_widget_get_mapped(GTK_WIDGET(view_.get())))
    webkit_web_view_set_zoom_level(view_.get(), engineZoom(zoom_));
}

void GtkWebView::setCustomUserAgent(std::string userAgent) {
  userAgent_ = std::move(userAgent);
  if (view_) {
    webkit_settings_set_user_agent(settings_.get(), userAgent_.empty() ? nullptr : userAgent_.c_str());
  }
}

void GtkWebView::setAllowsBackForwardNavigationGestures(bool isAllowed) {
  allowsGestures_ = isAllowed;
  if (view_) webkit_settings_set_enable_back_forward_navigation_gestures(settings_.get(), isAllowed);
}

void GtkWebView::evaluateJavaScript(const std::string& script, ScriptCompletion completion) {
  if (!view_) {
    if (completion) completion(std::nullopt, NSError{"WKErrorDomain", 3, "No page has been loaded"});
    return;
  }
  webkit_web_view_evaluate_javascript(
      view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr, nullptr, cancellable_.get(),
      scriptEnded, std::make_unique<ScriptRun>(ScriptRun{std::move(completion)}).release());
}

void GtkWebView::createPDF(const WKPDFConfiguration& configuration, DataCompletion completion) {
  // A view that was never in a window has no size, and what a page measures by its window would come to
  // nothing.
  if (auto* const widget = GTK_WIDGET(engineView()); gtk_widget_get_width(widget) == 0) {
    const auto setup = GObjectPtr<GtkPageSetup>::adopt(pageSetupFor({}));
    gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_allocate(widget, pixelsOf(gtk_page_setup_get_paper_width(setup.get(), GTK_UNIT_INCH)),
                        pixelsOf(gtk_page_setup_get_paper_height(setup.get(), GTK_UNIT_INCH)), -1, nullptr);
  }
  // On a busy machine a page that was just asked for would come out blank.
  whenDocumentIsThere([this, configuration, completion = whileAlive(std::move(completion))] {
    printToPDF(engineView(), configuration, completion);
  });
}

void GtkWebView::whenDocumentIsThere(std::function<void()> action) {
  auto* const view = engineView();
  if (awaitsDocument_ && webkit_web_view_is_loading(view)) {
    waitingForDocument_.push_back(std::move(action));
    return;
  }
  // By then the process has done what it was told before.
  webkit_web_view_evaluate_javascript(
      view, "0", -1, nullptr, nullptr, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void()>> next(static_cast<std::function<void()>*>(data));
        GError* raw = nullptr;
        const auto value = GObjectPtr<JSCValue>::adopt(
            webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &raw));
        const GErrorPtr error(raw);
        // The view is gone then.
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        (*next)();
      },
      std::make_unique<std::function<void()>>(std::move(action)).release());
}

void GtkWebView::createMHTMLData(DataCompletion completion) {
  // The engine forgets the document type.
  evaluateJavaScript("document.compatMode", [this, completion = whileAlive(std::move(completion))](
                                                const std::optional<std::string>& mode, const auto& error) {
    if (error) return completion(tl::unexpected(*error));
    saveAsMHTML(engineView(), mode == "\"CSS1Compat\"", completion);
  });
}

void GtkWebView::printOperation(const NSPrintInfo& info, std::function<void()> ended) {
  askToPrint(engineView(), engine_(), info, [alive = isAlive_.watch(), ended = std::move(ended)] {
    // The dialogue is just being closed: what follows it may open the next one.
    DispatchQueue::main().async([alive, ended] {
      if (alive) ended();
    });
  });
}

WKWebView::DataCompletion GtkWebView::whileAlive(DataCompletion completion) const {
  return [alive = isAlive_.watch(),
          completion = std::move(completion)](tl::expected<std::string, NSError> data) {
    if (alive) completion(std::move(data));
  };
}

}  // namespace platform
