#include "Platform/Gtk/GtkEditActions.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/NSPasteboard.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

namespace {

constexpr double mostPatience = 2;
/// Longer than the pasteboard is waited for: what it fails with comes before the keys, too.
constexpr double patienceOfHolders = NSPasteboard::patience + 1;

struct EditAction {
  std::string_view selector;
  /// The action of GTK's text widgets.
  const char* widgetAction;
  /// The web engine's command, and whether it can be carried out now.
  const char* engineCommand;
  gboolean (*isAvailable)(WebKitEditorState*);
};

constexpr std::array editActions = {
    EditAction{"cut:", "clipboard.cut", WEBKIT_EDITING_COMMAND_CUT, webkit_editor_state_is_cut_available},
    EditAction{"copy:", "clipboard.copy", WEBKIT_EDITING_COMMAND_COPY, webkit_editor_state_is_copy_available},
    EditAction{"paste:", "clipboard.paste", WEBKIT_EDITING_COMMAND_PASTE,
               webkit_editor_state_is_paste_available},
    EditAction{"selectAll:", "selection.select-all", WEBKIT_EDITING_COMMAND_SELECT_ALL, nullptr},
    EditAction{"undo:", "text.undo", WEBKIT_EDITING_COMMAND_UNDO, webkit_editor_state_is_undo_available},
    EditAction{"redo:", "text.redo", WEBKIT_EDITING_COMMAND_REDO, webkit_editor_state_is_redo_available},
    // Where something can be pasted, something can be deleted: the focus is in a text of the page.
    EditAction{"deleteBackward:", nullptr, "DeleteBackward", webkit_editor_state_is_paste_available},
    EditAction{"deleteForward:", nullptr, "DeleteForward", webkit_editor_state_is_paste_available},
    EditAction{"deleteWordBackward:", nullptr, "DeleteWordBackward", webkit_editor_state_is_paste_available},
    EditAction{"deleteWordForward:", nullptr, "DeleteWordForward", webkit_editor_state_is_paste_available},
};

/// True if something is selected in the page. What a frame of another site has selected can't be seen.
constexpr const char* selectionScript = R"((() => {
  let place = document;
  for (;;) {
    const focus = place.activeElement;
    if (focus && focus.shadowRoot) { place = focus.shadowRoot; continue; }
    if (focus && focus.tagName === 'IFRAME') {
      if (!focus.contentDocument) return true;
      place = focus.contentDocument;
      continue;
    }
    try {
      if (focus && focus.selectionStart !== undefined && focus.selectionStart !== null)
        return focus.selectionStart !== focus.selectionEnd;
    } catch (error) {}
    const selection = (place.getSelection || document.getSelection).call(place.getSelection ? place : document);
    return selection !== null && !selection.isCollapsed;
  }
})())";

constexpr const char* ownWorld = "velkin";

/// What is known of a view's page beside what the engine tells.
struct PageEditing {
  /// A command was given after the engine told last what can be done.
  bool isStateOld = false;
  /// It let a wait run out, and hasn't answered since.
  bool isSilent = false;
  /// Keys on their way to it. The engine hands it one after the other, each when the one before it is done.
  int keys = 0;
};

PageEditing& editingOf(WebKitWebView* view) {
  constexpr const char* key = "velkin-editing";
  if (auto* known = static_cast<PageEditing*>(g_object_get_data(G_OBJECT(view), key))) return *known;
  auto* fresh = std::make_unique<PageEditing>().release();
  g_object_set_data_full(G_OBJECT(view), key, fresh, [](gpointer editing) {
    std::default_delete<PageEditing>()(static_cast<PageEditing*>(editing));
  });
  g_signal_connect_object(webkit_web_view_get_editor_state(view), "changed",
                          G_CALLBACK(+[](WebKitEditorState*, gpointer changed) {
                            editingOf(WEBKIT_WEB_VIEW(changed)).isStateOld = false;
                          }),
                          view, GConnectFlags(0));
  return *fresh;
}

/// A view that may go meanwhile.
class WeakView {
 public:
  explicit WeakView(WebKitWebView* view) { g_weak_ref_init(&ref_, view); }
  ~WeakView() { g_weak_ref_clear(&ref_); }
  WeakView(const WeakView&) = delete;
  WeakView& operator=(const WeakView&) = delete;
  GObjectPtr<WebKitWebView> lock() {
    return GObjectPtr<WebKitWebView>::adopt(static_cast<WebKitWebView*>(g_weak_ref_get(&ref_)));
  }

 private:
  GWeakRef ref_;
};

/// The action that is being waited for.
struct Wait {
  EditOrder order = EditOrder::free;
  /// Tells a late answer from one that is waited for.
  unsigned number = 0;
  std::unique_ptr<Timer> patience;
  std::vector<std::function<void()>> work;
};

Wait& theWait() {
  // The process ends without destructors, and timers need the main loop.
  static auto* const wait = new Wait();
  return *wait;
}

void waitIsOver(unsigned number) {
  auto& wait = theWait();
  if (number != wait.number || wait.order == EditOrder::free) return;
  wait.order = EditOrder::free;
  wait.patience.reset();
  for (auto& work : std::exchange(wait.work, {})) work();
}

/// Starts a wait, or goes on with the present one for another action. Returns its number.
unsigned startWait(EditOrder order, WebKitWebView* view, double patience = mostPatience) {
  auto& wait = theWait();
  wait.order = std::max(wait.order, order);
  const auto number = ++wait.number;
  wait.patience = DispatchQueue::main().timer(patience, [number, weak = std::make_shared<WeakView>(view)] {
    if (const auto silent = weak->lock()) editingOf(silent.get()) = {.isStateOld = true, .isSilent = true};
    // It may be that another program keeps it waiting.
    if (auto* display = gdk_display_get_default())
      WindowSystem::present().endClipboardRequests(gdk_display_get_clipboard(display));
    waitIsOver(number);
  });
  return number;
}

/// A question to the page that it answers after all that it was told before.
void waitForPage(WebKitWebView* view) {
  struct Asked {
    unsigned number;
  };
  const auto number =
      editingOf(view).isSilent ? theWait().number : startWait(EditOrder::nextActionWaits, view);
  webkit_web_view_can_execute_editing_command(
      view, WEBKIT_EDITING_COMMAND_SELECT_ALL, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Asked> asked(static_cast<Asked*>(data));
        webkit_web_view_can_execute_editing_command_finish(WEBKIT_WEB_VIEW(source), result, nullptr);
        auto* page = WEBKIT_WEB_VIEW(source);
        auto& editing = editingOf(page);
        editing.isSilent = false;
        editing.keys = std::max(editing.keys - 1, 0);
        if (editing.keys > 0) {
          waitForPage(page);
        } else {
          waitIsOver(asked->number);
        }
      },
      std::make_unique<Asked>(Asked{number}).release());
}

/// The key goes on to the page, which may copy by itself.
void waitForPageInLaterTurn(WebKitWebView* view) {
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer page) -> gboolean {
        waitForPage(WEBKIT_WEB_VIEW(page));
        return G_SOURCE_REMOVE;
      },
      g_object_ref(view), g_object_unref);
}

void execute(WebKitWebView* view, const char* command) {
  webkit_web_view_execute_editing_command(view, command);
  editingOf(view).isStateOld = true;
  waitForPage(view);
}

/// Copying with nothing selected would empty the clipboard, so the page is asked first.
void executeIfSelected(WebKitWebView* view, const char* command) {
  struct Wanted {
    const char* command;
  };
  if (!editingOf(view).isSilent) startWait(EditOrder::nextActionWaits, view);
  webkit_web_view_evaluate_javascript(
      view, selectionScript, -1, ownWorld, nullptr, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Wanted> wanted(static_cast<Wanted*>(data));
        auto* page = WEBKIT_WEB_VIEW(source);
        const auto value =
            GObjectPtr<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(page, result, nullptr));
        if (value && jsc_value_to_boolean(value.get())) {
          execute(page, wanted->command);
        } else {
          waitForPage(page);
        }
      },
      std::make_unique<Wanted>(Wanted{command}).release());
}

bool sendToPage(WebKitWebView* view, const EditAction& action) {
  const bool isDeletion = action.widgetAction == nullptr;
  const bool takesSelection = action.selector == "cut:" || action.selector == "copy:";
  if (takesSelection && editingOf(view).isStateOld) {
    executeIfSelected(view, action.engineCommand);
    return true;
  }
  if (action.isAvailable != nullptr && !action.isAvailable(webkit_web_view_get_editor_state(view))) {
    if (takesSelection) waitForPageInLaterTurn(view);
    return false;
  }
  if (isDeletion) {
    webkit_web_view_execute_editing_command(view, action.engineCommand);
  } else {
    execute(view, action.engineCommand);
  }
  return true;
}

bool deleteInText(GtkWidget* focus, std::string_view selector) {
  const bool isText = GTK_IS_TEXT(focus);
  if (!isText && !GTK_IS_TEXT_VIEW(focus)) return false;
  if (selector == "deleteWordBackward:") {
    g_signal_emit_by_name(focus, "delete-from-cursor", GTK_DELETE_WORD_ENDS, -1);
  } else if (selector == "deleteWordForward:") {
    g_signal_emit_by_name(focus, "delete-from-cursor", GTK_DELETE_WORD_ENDS, 1);
  } else if (selector == "deleteForward:") {
    g_signal_emit_by_name(focus, "delete-from-cursor", GTK_DELETE_CHARS, 1);
  } else {
    g_signal_emit_by_name(focus, "backspace");
  }
  return true;
}

/// The clipboard is read in a later turn: the same, asked for after it, is there after it.
void waitForPastedText(GtkWidget* focus) {
  const auto number = startWait(EditOrder::everyKeyWaits, nullptr);
  struct Asked {
    unsigned number;
  };
  gdk_clipboard_read_text_async(
      gtk_widget_get_clipboard(focus), nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Asked> asked(static_cast<Asked*>(data));
        const GStringPtr ignored(gdk_clipboard_read_text_finish(GDK_CLIPBOARD(source), result, nullptr));
        // The widget's own turn comes first.
        DispatchQueue::main().async([number = asked->number] { waitIsOver(number); });
      },
      std::make_unique<Asked>(Asked{number}).release());
}

GtkWindow*& windowOfKey() {
  static GtkWindow* window = nullptr;
  return window;
}

GtkWidget* focusedWidget() {
  auto* window = windowWithKeyboard();
  return window != nullptr ? gtk_window_get_focus(window) : nullptr;
}

}  // namespace

GtkWindow* windowWithKeyboard() {
  if (windowOfKey() != nullptr) return windowOfKey();
  GList* windows = gtk_window_list_toplevels();
  GtkWindow* found = nullptr;
  for (GList* entry = windows; entry != nullptr; entry = entry->next) {
    auto* window = GTK_WINDOW(entry->data);
    if (!gtk_widget_get_mapped(GTK_WIDGET(window)) || !gtk_window_is_active(window)) continue;
    if (found == nullptr || WindowSystem::present().isActive(window)) found = window;
  }
  g_list_free(windows);
  return found;
}

void noteKeyToPage(GtkWidget* view) {
  auto* page = WEBKIT_WEB_VIEW(view);
  auto& editing = editingOf(page);
  if (editing.isSilent) return;
  startWait(EditOrder::nextActionWaits, page);
  // The page is asked behind the key, and once for each.
  if (editing.keys++ == 0) waitForPageInLaterTurn(page);
}

KeyEventScope::KeyEventScope(GtkWindow* window) : earlier_(std::exchange(windowOfKey(), window)) {}
KeyEventScope::~KeyEventScope() { windowOfKey() = earlier_; }

EditOrder editOrder() { return theWait().order; }

std::shared_ptr<void> holdAllKeys() {
  const auto number = startWait(EditOrder::everyKeyWaits, nullptr, patienceOfHolders);
  return {nullptr, [number](void*) { waitIsOver(number); }};
}

void whenEditActionsAreDone(std::function<void()> work) {
  if (theWait().order == EditOrder::free) {
    work();
  } else {
    theWait().work.push_back(std::move(work));
  }
}

bool isTextFocused() {
  GtkWidget* focus = focusedWidget();
  if (focus == nullptr) return false;
  if (WEBKIT_IS_WEB_VIEW(focus)) {
    return webkit_editor_state_is_paste_available(webkit_web_view_get_editor_state(WEBKIT_WEB_VIEW(focus))) !=
           FALSE;
  }
  return GTK_IS_TEXT(focus) || (GTK_IS_TEXT_VIEW(focus) && gtk_text_view_get_editable(GTK_TEXT_VIEW(focus)));
}

bool sendEditAction(const char* selector) {
  GtkWidget* focus = focusedWidget();
  if (focus == nullptr) return false;
  const auto* action = std::find_if(editActions.begin(), editActions.end(),
                                    [&](const EditAction& known) { return known.selector == selector; });
  if (action == editActions.end()) return false;
  if (WEBKIT_IS_WEB_VIEW(focus)) return sendToPage(WEBKIT_WEB_VIEW(focus), *action);
  if (action->widgetAction == nullptr) return deleteInText(focus, action->selector);
  if (!gtk_widget_activate_action(focus, action->widgetAction, nullptr)) return false;
  if (action->selector == "paste:") waitForPastedText(focus);
  return true;
}

}  // namespace platform
