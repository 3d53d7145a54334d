#include "Platform/Gtk/PageQuestions.h"

#include "Platform/Alive.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/Toolkit.h"
#include "Platform/LogText.h"
#include "Platform/URL.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <gtk/gtk.h>

namespace platform {

namespace {

constexpr const char* cancelId = "cancel";
constexpr const char* confirmId = "confirm";
constexpr const char* silenceId = "silence";
constexpr int textWidth = 320;
constexpr int highestText = 240;
/// A text without an end would be laid out for ever.
constexpr std::size_t longestText = 20000;

std::string siteOf(WebKitWebView* view) {
  const char* uri = webkit_web_view_get_uri(view);
  const auto url = URL::parseReported(uri != nullptr ? uri : "");
  const auto host = url ? url->host() : std::nullopt;
  return host ? *host : "This page";
}

std::string validStart(const char* text) {
  const GStringPtr valid(g_utf8_make_valid(text != nullptr ? text : "", -1));
  std::string all = valid.get();
  if (all.size() <= longestText) return all;
  const char* end = g_utf8_find_prev_char(all.c_str(), all.c_str() + longestText);
  all.resize(static_cast<std::size_t>(end - all.c_str()));
  return all + "…";
}

/// What the page's scripts ask, one question after the other, and what they get when the user has had enough.
class ScriptQuestions : public PageDialogue {
 public:
  ScriptQuestions(WebKitWebView* view, WebEngine& engine) : view_(view), engine_(engine) {}

  ~ScriptQuestions() override {
    closeDialog();
    release();
  }

  bool isSilenced() const noexcept { return isSilenced_; }
  bool isHeld() const noexcept { return isSilenced_ && asked_ != nullptr; }

  void ask(WebKitScriptDialog* asked) {
    constexpr std::int64_t sameRow = std::int64_t{5} * G_USEC_PER_SEC;
    constexpr int mostUnheard = 20;
    const bool isForLeaving =
        webkit_script_dialog_get_dialog_type(asked) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM;
    // Whether to leave the page is the user's question, not the page's.
    if (isSilenced_ && !isForLeaving) {
      // A page that goes on for ever waits for this one's answer, and the machine has its peace.
      if (++inRow_ > mostUnheard && asked_ == nullptr) asked_ = webkit_script_dialog_ref(asked);
      return;
    }
    // One of a frame, while the page's own is up.
    if (asked_ != nullptr) return;
    const auto now = g_get_monotonic_time();
    inRow_ = now - lastAnswer_ < sameRow ? inRow_ + 1 : 1;
    asked_ = webkit_script_dialog_ref(asked);
    if (gtk_widget_get_mapped(GTK_WIDGET(view_))) {
      show();
    } else {
      waitForShow();
    }
  }

 private:
  /// Nobody knows what page it would be: it asks when it is on show.
  void waitForShow() {
    g_signal_connect_swapped(view_, "map", G_CALLBACK(+[](ScriptQuestions* self) {
                               g_signal_handlers_disconnect_by_data(self->view_, self);
                               // In a later turn: its window is on its way to the screen.
                               DispatchQueue::main().async([self, alive = self->isAlive_.watch()] {
                                 if (!alive || self->asked_ == nullptr || self->dialog_ != nullptr) return;
                                 if (gtk_widget_get_mapped(GTK_WIDGET(self->view_))) {
                                   self->show();
                                 } else {
                                   self->waitForShow();
                                 }
                               });
                             }),
                             this);
  }

  /// The user has gone elsewhere, to another view or out of the popover.
  void putOff() {
    g_signal_handlers_disconnect_by_data(view_, this);
    closeDialog();
    entry_ = nullptr;
    pin_.reset();
    waitForShow();
  }

  bool keyPressed(guint keyval) {
    if (keyval == GDK_KEY_Escape) {
      gtk_window_close(GTK_WINDOW(dialog_));
      return true;
    }
    if (keyval != GDK_KEY_Return && keyval != GDK_KEY_KP_Enter && keyval != GDK_KEY_ISO_Enter) return false;
    GtkWidget* focus = gtk_window_get_focus(GTK_WINDOW(dialog_));
    if (focus != nullptr && GTK_IS_BUTTON(focus)) {
      gtk_widget_activate(focus);
    } else {
      // The dialogue itself closes behind its buttons only.
      const auto closing = GObjectPtr<GtkWidget>::retain(dialog_);
      answered(confirmId);
      gtk_window_destroy(GTK_WINDOW(closing.get()));
    }
    return true;
  }

  void release() {
    g_signal_handlers_disconnect_by_data(view_, this);
    if (asked_ == nullptr) return;
    auto* answered = std::exchange(asked_, nullptr);
    webkit_script_dialog_close(answered);
    webkit_script_dialog_unref(answered);
  }

  void closeDialog() {
    if (dialog_ == nullptr) return;
    g_signal_handlers_disconnect_by_data(dialog_, this);
    gtk_window_destroy(GTK_WINDOW(std::exchange(dialog_, nullptr)));
  }

  void show() {
    constexpr int manyInRow = 3;
    const auto type = webkit_script_dialog_get_dialog_type(asked_);
    const bool isForLeaving = type == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM;
    pin_ = engine_.popover().keepOpenUnlessClosed();
    const bool isAlert = type == WEBKIT_SCRIPT_DIALOG_ALERT;
    toolkit::PageQuestion question{.heading = isForLeaving ? "Leave this page?" : siteOf(view_) + " says",
                                   .body = {},
                                   .content = content(type),
                                   .responses = {},
                                   .suggested = confirmId,
                                   .byDefault = confirmId,
                                   .byClosing = isAlert ? confirmId : cancelId};
    if (!isAlert) question.responses.push_back({cancelId, isForLeaving ? "Stay" : "Cancel"});
    question.responses.push_back({confirmId, isForLeaving ? "Leave" : "OK"});
    if (inRow_ >= manyInRow && !isForLeaving)
      question.responses.push_back({silenceId, "_Stop this page from asking"});
    dialog_ = toolkit::makePageQuestion(windowOf(view_), question);
    g_signal_connect(dialog_, "response", G_CALLBACK(+[](GtkWidget*, const char* response, gpointer self) {
                       static_cast<ScriptQuestions*>(self)->answered(response);
                     }),
                     this);
    // With the window that it stands before.
    g_signal_connect_swapped(dialog_, "destroy",
                             G_CALLBACK(+[](ScriptQuestions* self) { self->answered(cancelId); }), this);
    // The program's keys lead away from here as from the page; those of the answer come first.
    watchKeys(GTK_WINDOW(dialog_));
    GtkEventController* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    g_signal_connect(keys, "key-pressed",
                     G_CALLBACK(+[](GtkEventControllerKey*, guint keyval, guint, GdkModifierType,
                                    gpointer self) -> gboolean {
                       return static_cast<ScriptQuestions*>(self)->keyPressed(keyval) ? TRUE : FALSE;
                     }),
                     this);
    gtk_widget_add_controller(dialog_, keys);
    g_signal_connect_swapped(view_, "unmap", G_CALLBACK(+[](ScriptQuestions* self) { self->putOff(); }),
                             this);
    gtk_window_present(GTK_WINDOW(dialog_));
    if (entry_ != nullptr) gtk_widget_grab_focus(entry_);
  }

  /// The page's words, which scroll where they are many, and the line for a prompt's answer.
  GtkWidget* content(WebKitScriptDialogType type) {
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
    auto words = validStart(webkit_script_dialog_get_message(asked_));
    if (type == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
      words = siteOf(view_) + " may not have saved what you entered.";
    GtkWidget* text = gtk_label_new(words.c_str());
    gtk_label_set_wrap(GTK_LABEL(text), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(text), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_max_width_chars(GTK_LABEL(text), 40);
    gtk_label_set_xalign(GTK_LABEL(text), 0);
    GtkWidget* scrolled = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scrolled), TRUE);
    gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scrolled), highestText);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), text);
    gtk_widget_set_size_request(scrolled, textWidth, -1);
    gtk_box_append(GTK_BOX(box), scrolled);
    entry_ = nullptr;
    if (type != WEBKIT_SCRIPT_DIALOG_PROMPT) return box;
    entry_ = gtk_entry_new();
    const char* usual = webkit_script_dialog_prompt_get_default_text(asked_);
    gtk_editable_set_text(GTK_EDITABLE(entry_), usual != nullptr ? usual : "");
    gtk_entry_set_activates_default(GTK_ENTRY(entry_), TRUE);
    gtk_accessible_update_property(GTK_ACCESSIBLE(entry_), GTK_ACCESSIBLE_PROPERTY_LABEL, words.c_str(), -1);
    gtk_box_append(GTK_BOX(box), entry_);
    return box;
  }

  void answered(std::string_view response) {
    g_signal_handlers_disconnect_by_data(dialog_, this);
    g_signal_handlers_disconnect_by_data(view_, this);
    const bool isConfirmed = response == confirmId;
    switch (webkit_script_dialog_get_dialog_type(asked_)) {
      case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
        webkit_script_dialog_confirm_set_confirmed(asked_, isConfirmed);
        break;
      case WEBKIT_SCRIPT_DIALOG_PROMPT:
        if (isConfirmed)
          webkit_script_dialog_prompt_set_text(asked_, gtk_editable_get_text(GTK_EDITABLE(entry_)));
        break;
      default:
        break;
    }
    dialog_ = nullptr;
    entry_ = nullptr;
    pin_.reset();
    lastAnswer_ = g_get_monotonic_time();
    if (response == silenceId) {
      isSilenced_ = true;
      inRow_ = 0;
    }
    gtk_widget_grab_focus(GTK_WIDGET(view_));
    release();
  }

  WebKitWebView* view_;
  WebEngine& engine_;
  WebKitScriptDialog* asked_ = nullptr;
  GtkWidget* dialog_ = nullptr;
  GtkWidget* entry_ = nullptr;
  std::shared_ptr<void> pin_;
  bool isSilenced_ = false;
  int inRow_ = 0;
  std::int64_t lastAnswer_ = 0;
  Alive isAlive_;
};

gboolean scriptDialog(WebKitWebView* view, WebKitScriptDialog* dialog, gpointer engine) {
  auto& state = PageState::of(view);
  auto* questions = state.open<ScriptQuestions>();
  if (questions == nullptr) {
    auto fresh = std::make_unique<ScriptQuestions>(view, *static_cast<WebEngine*>(engine));
    questions = fresh.get();
    state.add(std::move(fresh));
  }
  questions->ask(dialog);
  return TRUE;
}

}  // namespace

void answerScriptQuestions(WebKitWebView* view, WebEngine& engine) {
  g_signal_connect(view, "script-dialog", G_CALLBACK(scriptDialog), &engine);
}

bool isSilencedAndAsking(WebKitWebView* view) {
  const auto* questions = PageState::of(view).open<ScriptQuestions>();
  return questions != nullptr && questions->isHeld();
}

}  // namespace platform
