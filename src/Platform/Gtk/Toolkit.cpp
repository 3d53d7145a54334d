#include "Platform/Gtk/Toolkit.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <adwaita.h>

namespace platform::toolkit {

namespace {

#if ADW_CHECK_VERSION(1, 5, 0)
#define VELKIN_HAS_ALERT_DIALOG 1
#else
#define VELKIN_HAS_ALERT_DIALOG 0
#endif

struct Asked {
  std::function<void(std::size_t)> answer;
  std::size_t cancel = 0;
  bool isAnswered = false;

  void give(std::size_t button) {
    if (!std::exchange(isAnswered, true)) answer(button);
  }
};

struct AskedForFile {
  FileAnswer answer;
  std::vector<GObjectPtr<GtkFileFilter>> filters;

  void give(std::optional<NSSavePanel::Choice> choice) {
    if (answer) std::exchange(answer, {})(std::move(choice));
  }
  std::size_t positionOf(GtkFileFilter* filter) const {
    for (std::size_t i = 0; i < filters.size(); ++i) {
      if (filters[i].get() == filter) return i;
    }
    return 0;
  }
};

template <class T>
void destroy(gpointer data, GClosure*) {
  std::default_delete<T>()(static_cast<T*>(data));
}

std::vector<GObjectPtr<GtkFileFilter>> filtersOf(const std::vector<NSFileType>& types) {
  std::vector<GObjectPtr<GtkFileFilter>> filters;
  for (const auto& type : types) {
    auto filter = GObjectPtr<GtkFileFilter>::adopt(gtk_file_filter_new());
    gtk_file_filter_set_name(filter.get(), type.name.c_str());
    gtk_file_filter_add_suffix(filter.get(), type.extension.c_str());
    filters.push_back(std::move(filter));
  }
  return filters;
}

std::optional<std::string> pathOf(GFile* file) {
  if (file == nullptr) return std::nullopt;
  const GStringPtr path(g_file_get_path(file));
  return path ? std::optional<std::string>(path.get()) : std::nullopt;
}

}  // namespace

void announce([[maybe_unused]] GtkWidget* widget, [[maybe_unused]] const std::string& text) {
#if GTK_CHECK_VERSION(4, 14, 0)
  gtk_accessible_announce(GTK_ACCESSIBLE(widget), text.c_str(), GTK_ACCESSIBLE_ANNOUNCEMENT_PRIORITY_MEDIUM);
#endif
}

GtkAccessibleRole newsRole() {
#if GTK_CHECK_VERSION(4, 14, 0)
  // A status has no name there. Its news are announced besides.
  return GTK_ACCESSIBLE_ROLE_LABEL;
#else
  return GTK_ACCESSIBLE_ROLE_STATUS;
#endif
}

void loadStyle(GtkCssProvider* provider, const std::string& text) {
#if GTK_CHECK_VERSION(4, 12, 0)
  gtk_css_provider_load_from_string(provider, text.c_str());
#else
  gtk_css_provider_load_from_data(provider, text.data(), static_cast<gssize>(text.size()));
#endif
}

void presentWithTime(GtkWindow* window, std::uint32_t time) {
#if GTK_CHECK_VERSION(4, 14, 0)
  // Without a time of its own; the window has been given it as its user time before.
  static_cast<void>(time);
  gtk_window_present(window);
#else
  gtk_window_present_with_time(window, time);
#endif
}

Dismiss ask(GtkWindow* parent, const NSAlert& alert, std::function<void(std::size_t)> answer) {
  const auto* body = alert.informativeText.empty() ? nullptr : alert.informativeText.c_str();
  auto buttons = alert.buttons;
  if (buttons.empty()) buttons.push_back({"OK", NSAlert::Button::Role::confirm});
  const auto idOf = [](std::size_t button) { return std::to_string(button); };
  auto* asked = std::make_unique<Asked>(Asked{std::move(answer), alert.cancelButton()}).release();
#if VELKIN_HAS_ALERT_DIALOG
  auto* dialog = ADW_ALERT_DIALOG(adw_alert_dialog_new(alert.messageText.c_str(), body));
  const auto add = adw_alert_dialog_add_response;
  const auto dress = adw_alert_dialog_set_response_appearance;
  adw_alert_dialog_set_close_response(dialog, idOf(asked->cancel).c_str());
  const auto setDefault = adw_alert_dialog_set_default_response;
#else
  auto* dialog = ADW_MESSAGE_DIALOG(adw_message_dialog_new(parent, alert.messageText.c_str(), body));
  const auto add = adw_message_dialog_add_response;
  const auto dress = adw_message_dialog_set_response_appearance;
  adw_message_dialog_set_close_response(dialog, idOf(asked->cancel).c_str());
  const auto setDefault = adw_message_dialog_set_default_response;
  gtk_window_set_title(GTK_WINDOW(dialog), "Velkin");
  gtk_window_set_destroy_with_parent(GTK_WINDOW(dialog), TRUE);
#endif
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    const auto id = idOf(i);
    add(dialog, id.c_str(), buttons[i].title.c_str());
    if (buttons[i].role == NSAlert::Button::Role::destroy)
      dress(dialog, id.c_str(), ADW_RESPONSE_DESTRUCTIVE);
    if (buttons[i].role == NSAlert::Button::Role::confirm) {
      dress(dialog, id.c_str(), ADW_RESPONSE_SUGGESTED);
      setDefault(dialog, id.c_str());
    }
  }
  g_signal_connect_data(
      dialog, "response", G_CALLBACK(+[](GtkWidget*, const char* id, gpointer data) {
        static_cast<Asked*>(data)->give(static_cast<std::size_t>(g_ascii_strtoull(id, nullptr, 10)));
      }),
      asked, destroy<Asked>, GConnectFlags(0));
  // A window that goes with its parent gives no answer of its own.
  g_signal_connect(dialog, "destroy", G_CALLBACK(+[](GtkWidget*, gpointer data) {
                     auto* open = static_cast<Asked*>(data);
                     open->give(open->cancel);
                   }),
                   asked);
#if VELKIN_HAS_ALERT_DIALOG
  adw_dialog_present(ADW_DIALOG(dialog), GTK_WIDGET(parent));
  return [dialog] { adw_dialog_force_close(ADW_DIALOG(dialog)); };
#else
  gtk_window_present(GTK_WINDOW(dialog));
  return [dialog] { gtk_window_destroy(GTK_WINDOW(dialog)); };
#endif
}

// The newer toolkit's alert isn't a window, and a page's question is one: it has the program's keys, and
// stands before what is no window of the program's library.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

GtkWidget* makePageQuestion(GtkWindow* parent, const PageQuestion& question) {
  const auto* body = question.body.empty() ? nullptr : question.body.c_str();
  GtkWidget* made = adw_message_dialog_new(parent, question.heading.c_str(), body);
  auto* dialog = ADW_MESSAGE_DIALOG(made);
  gtk_window_set_title(GTK_WINDOW(made), question.heading.c_str());
  if (question.content != nullptr) adw_message_dialog_set_extra_child(dialog, question.content);
  for (const auto& response : question.responses)
    adw_message_dialog_add_response(dialog, response.id, response.label);
  adw_message_dialog_set_response_appearance(dialog, question.suggested, ADW_RESPONSE_SUGGESTED);
  adw_message_dialog_set_default_response(dialog, question.byDefault);
  adw_message_dialog_set_close_response(dialog, question.byClosing);
  return made;
}

GtkWindow* makeSettingsWindow(GtkWidget* page) {
  auto* window = ADW_PREFERENCES_WINDOW(adw_preferences_window_new());
  adw_preferences_window_set_search_enabled(window, FALSE);
  adw_preferences_window_add(window, ADW_PREFERENCES_PAGE(page));
  return GTK_WINDOW(window);
}

G_GNUC_END_IGNORE_DEPRECATIONS

namespace {

std::vector<std::string> pathsOf(GListModel* files) {
  std::vector<std::string> paths;
  const guint count = files != nullptr ? g_list_model_get_n_items(files) : 0;
  for (guint i = 0; i < count; ++i) {
    const auto file = GObjectPtr<GFile>::adopt(G_FILE(g_list_model_get_item(files, i)));
    if (auto path = pathOf(file.get())) paths.push_back(*std::move(path));
  }
  return paths;
}

}  // namespace

#if GTK_CHECK_VERSION(4, 10, 0)

namespace {

struct AskedForFiles {
  FilesAnswer answer;
  GObjectPtr<GCancellable> cancellable;

  void give(std::vector<std::string> paths) const {
    if (!g_cancellable_is_cancelled(cancellable.get())) answer(std::move(paths));
  }
};

}  // namespace

Dismiss askForFiles(GtkWindow* parent, const FilesQuestion& question, FilesAnswer answer) {
  const auto dialog = GObjectPtr<GtkFileDialog>::adopt(gtk_file_dialog_new());
  gtk_file_dialog_set_title(dialog.get(), question.title.c_str());
  gtk_file_dialog_set_modal(dialog.get(), TRUE);
  if (question.filter != nullptr) gtk_file_dialog_set_default_filter(dialog.get(), question.filter);
  const auto cancellable = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  auto* asked = std::make_unique<AskedForFiles>(AskedForFiles{std::move(answer), cancellable}).release();
  if (question.takesSeveral) {
    gtk_file_dialog_open_multiple(
        dialog.get(), parent, cancellable.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<AskedForFiles> open(static_cast<AskedForFiles*>(data));
          const auto files = GObjectPtr<GListModel>::adopt(
              gtk_file_dialog_open_multiple_finish(GTK_FILE_DIALOG(source), result, nullptr));
          open->give(pathsOf(files.get()));
        },
        asked);
  } else {
    gtk_file_dialog_open(
        dialog.get(), parent, cancellable.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<AskedForFiles> open(static_cast<AskedForFiles*>(data));
          const auto file =
              GObjectPtr<GFile>::adopt(gtk_file_dialog_open_finish(GTK_FILE_DIALOG(source), result, nullptr));
          auto path = pathOf(file.get());
          open->give(path ? std::vector<std::string>{*std::move(path)} : std::vector<std::string>{});
        },
        asked);
  }
  return [cancellable] { g_cancellable_cancel(cancellable.get()); };
}

Dismiss askForFile(GtkWindow* parent, const FileQuestion& question, FileAnswer answer) {
  const auto dialog = GObjectPtr<GtkFileDialog>::adopt(gtk_file_dialog_new());
  auto asked = std::make_unique<AskedForFile>(AskedForFile{std::move(answer), filtersOf(question.types)});
  gtk_file_dialog_set_title(dialog.get(), question.title.c_str());
  gtk_file_dialog_set_modal(dialog.get(), TRUE);
  if (question.isSaving) gtk_file_dialog_set_initial_name(dialog.get(), question.name.c_str());
  if (!question.folder.empty()) {
    const auto folder = GObjectPtr<GFile>::adopt(g_file_new_for_path(question.folder.c_str()));
    gtk_file_dialog_set_initial_folder(dialog.get(), folder.get());
  }
  if (!asked->filters.empty()) {
    const auto list = GObjectPtr<GListStore>::adopt(g_list_store_new(GTK_TYPE_FILE_FILTER));
    for (const auto& filter : asked->filters) g_list_store_append(list.get(), filter.get());
    gtk_file_dialog_set_filters(dialog.get(), G_LIST_MODEL(list.get()));
    gtk_file_dialog_set_default_filter(dialog.get(), asked->filters.front().get());
  }
  const auto cancellable = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  // The toolkit doesn't tell which type was chosen: what the name ends with does.
  if (question.isSaving) {
    gtk_file_dialog_save(
        dialog.get(), parent, cancellable.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<AskedForFile> open(static_cast<AskedForFile*>(data));
          const auto file =
              GObjectPtr<GFile>::adopt(gtk_file_dialog_save_finish(GTK_FILE_DIALOG(source), result, nullptr));
          const auto path = pathOf(file.get());
          open->give(path ? std::optional(NSSavePanel::Choice{*path, 0}) : std::nullopt);
        },
        asked.release());
  } else {
    gtk_file_dialog_open(
        dialog.get(), parent, cancellable.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<AskedForFile> open(static_cast<AskedForFile*>(data));
          const auto file =
              GObjectPtr<GFile>::adopt(gtk_file_dialog_open_finish(GTK_FILE_DIALOG(source), result, nullptr));
          const auto path = pathOf(file.get());
          open->give(path ? std::optional(NSSavePanel::Choice{*path, 0}) : std::nullopt);
        },
        asked.release());
  }
  return [cancellable] { g_cancellable_cancel(cancellable.get()); };
}

#else

namespace {

void nativeAnswered(GtkNativeDialog* dialog, int response, gpointer data) {
  auto* open = static_cast<AskedForFile*>(data);
  std::optional<NSSavePanel::Choice> choice;
  if (response == GTK_RESPONSE_ACCEPT) {
    auto* chooser = GTK_FILE_CHOOSER(dialog);
    const auto file = GObjectPtr<GFile>::adopt(gtk_file_chooser_get_file(chooser));
    if (const auto path = pathOf(file.get())) {
      choice = NSSavePanel::Choice{*path, open->positionOf(gtk_file_chooser_get_filter(chooser))};
    }
  }
  open->give(std::move(choice));
  // In a later turn: it is still at work with its own answer.
  g_idle_add_once([](gpointer done) { g_object_unref(done); }, dialog);
}

}  // namespace

Dismiss askForFiles(GtkWindow* parent, const FilesQuestion& question, FilesAnswer answer) {
  auto* native = gtk_file_chooser_native_new(question.title.c_str(), parent, GTK_FILE_CHOOSER_ACTION_OPEN,
                                             nullptr, nullptr);
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(native), TRUE);
  gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(native), question.takesSeveral);
  if (question.filter != nullptr) gtk_file_chooser_set_filter(GTK_FILE_CHOOSER(native), question.filter);
  g_signal_connect_data(
      native, "response", G_CALLBACK(+[](GtkNativeDialog* dialog, int response, gpointer data) {
        std::vector<std::string> paths;
        if (response == GTK_RESPONSE_ACCEPT) {
          const auto files =
              GObjectPtr<GListModel>::adopt(gtk_file_chooser_get_files(GTK_FILE_CHOOSER(dialog)));
          paths = pathsOf(files.get());
        }
        (*static_cast<FilesAnswer*>(data))(std::move(paths));
        // In a later turn: it is still at work with its own answer.
        g_idle_add_once([](gpointer done) { g_object_unref(done); }, dialog);
      }),
      std::make_unique<FilesAnswer>(std::move(answer)).release(), destroy<FilesAnswer>, GConnectFlags(0));
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(native));
  return [native] {
    gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(native));
    g_object_unref(native);
  };
}

Dismiss askForFile(GtkWindow* parent, const FileQuestion& question, FileAnswer answer) {
  auto* native = gtk_file_chooser_native_new(
      question.title.c_str(), parent,
      question.isSaving ? GTK_FILE_CHOOSER_ACTION_SAVE : GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  auto* chooser = GTK_FILE_CHOOSER(native);
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(native), TRUE);
  if (question.isSaving) gtk_file_chooser_set_current_name(chooser, question.name.c_str());
  if (!question.folder.empty()) {
    const auto folder = GObjectPtr<GFile>::adopt(g_file_new_for_path(question.folder.c_str()));
    gtk_file_chooser_set_current_folder(chooser, folder.get(), nullptr);
  }
  auto* asked =
      std::make_unique<AskedForFile>(AskedForFile{std::move(answer), filtersOf(question.types)}).release();
  for (const auto& filter : asked->filters) gtk_file_chooser_add_filter(chooser, filter.get());
  if (!asked->filters.empty()) gtk_file_chooser_set_filter(chooser, asked->filters.front().get());
  g_signal_connect_data(native, "response", G_CALLBACK(nativeAnswered), asked, destroy<AskedForFile>,
                        GConnectFlags(0));
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(native));
  return [native] {
    // Hiding it gives no answer by itself.
    gtk_native_dialog_hide(GTK_NATIVE_DIALOG(native));
    g_signal_emit_by_name(native, "response", GTK_RESPONSE_CANCEL);
  };
}

#endif

}  // namespace platform::toolkit
