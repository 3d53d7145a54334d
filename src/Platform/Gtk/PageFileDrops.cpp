#include "Platform/Gtk/PageFileDrops.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/LogText.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace platform {

namespace {

/// All files of a drop together. They go to the page's process as text.
constexpr goffset mostDropped = goffset{32} << 20;

/// With the files as JSON and the place in the page's own pixels. Nothing but files is in the transfer. What
/// a page shows only while something is dragged over it gets a moment to come up.
constexpr const char* dropScript = R"js(
  const transfer = new DataTransfer();
  for (const file of JSON.parse(files)) {
    const bytes = Uint8Array.from(atob(file.content), character => character.charCodeAt(0));
    transfer.items.add(new File([bytes], file.name, {type: file.type}));
  }
  const under = () => document.elementFromPoint(x, y) || document.documentElement;
  const tell = (type, target) => target.dispatchEvent(new DragEvent(type,
      {bubbles: true, cancelable: type !== "dragleave", composed: true, clientX: x, clientY: y, dataTransfer: transfer}));
  tell("dragenter", under());
  tell("dragover", under());
  await new Promise(done => setTimeout(done, 100));
  const target = under();
  const isWanted = !tell("dragover", target);
  if (isWanted) {
    tell("drop", target);
    return true;
  }
  tell("dragleave", target);
  const label = target.closest("label");
  const field = target.closest("input[type=file]") || (label && label.control);
  if (!field || field.type !== "file" || field.disabled) return false;
  if (!field.multiple && transfer.files.length > 1) return false;
  field.files = transfer.files;
  for (const type of ["input", "change"]) field.dispatchEvent(new Event(type, {bubbles: true}));
  return true;
)js";

/// What a web page can put into a drag comes with one of these, from whatever browser it is.
bool mayBeOfAPage(GdkContentFormats* formats) {
  constexpr std::array<std::string_view, 4> marks = {"text/html", "text/x-moz", "application/x-moz-custom",
                                                     "chromium/"};
  gsize count = 0;
  const char* const* types = gdk_content_formats_get_mime_types(formats, &count);
  for (gsize i = 0; i < count; ++i) {
    for (const auto mark : marks) {
      if (std::string_view(types[i]).starts_with(mark)) return true;
    }
  }
  return false;
}

/// Files on their way to the page; it goes with the page.
class FileDrop : public PageDialogue {
 public:
  FileDrop(WebKitWebView* view, WebEngine& engine, GSList* files, double x, double y)
      : view_(view), engine_(engine), x_(x), y_(y) {
    auto job = std::make_unique<Job>();
    for (auto* entry = files; entry != nullptr; entry = entry->next)
      job->files.push_back(GObjectPtr<GFile>::retain(G_FILE(entry->data)));
    const auto task = GObjectPtr<GTask>::adopt(g_task_new(nullptr, cancellable_.get(), filesRead, this));
    g_task_set_task_data(task.get(), job.release(),
                         [](gpointer data) { std::default_delete<Job>()(static_cast<Job*>(data)); });
    g_task_run_in_thread(task.get(), readFiles);
  }
  ~FileDrop() override { g_cancellable_cancel(cancellable_.get()); }

 private:
  struct Job {
    std::vector<GObjectPtr<GFile>> files;
    nlohmann::json told = nlohmann::json::array();
    /// For the user; empty if all is well.
    std::string complaint;
  };

  /// On a thread of its own: a file may lie far away.
  static void readFiles(GTask* task, gpointer, gpointer data, GCancellable* cancellable) {
    auto& job = *static_cast<Job*>(data);
    goffset rest = mostDropped;
    for (const auto& file : job.files) {
      const auto info = GObjectPtr<GFileInfo>::adopt(
          g_file_query_info(file.get(), "standard::type,standard::size,standard::display-name",
                            G_FILE_QUERY_INFO_NONE, cancellable, nullptr));
      if (!info) {
        job.complaint = "What was dropped can't be read";
        break;
      }
      if (g_file_info_get_file_type(info.get()) != G_FILE_TYPE_REGULAR) {
        job.complaint = "Only files can be dropped here";
        break;
      }
      if (g_file_info_get_size(info.get()) > rest) {
        job.complaint = "That is too much to drop: choose it by the page's own button";
        break;
      }
      char* contents = nullptr;
      gsize length = 0;
      GError* raw = nullptr;
      g_file_load_contents(file.get(), cancellable, &contents, &length, nullptr, &raw);
      const GErrorPtr error(raw);
      const GStringPtr bytes(contents);
      if (error) {
        job.complaint = "What was dropped can't be read";
        break;
      }
      rest -= static_cast<goffset>(length);
      if (rest < 0) {
        job.complaint = "That is too much to drop: choose it by the page's own button";
        break;
      }
      const auto* start = reinterpret_cast<const guchar*>(bytes.get());
      const char* name = g_file_info_get_display_name(info.get());
      const GStringPtr kind(g_content_type_guess(name, start, length, nullptr));
      const GStringPtr type(g_content_type_get_mime_type(kind.get()));
      const GStringPtr text(g_base64_encode(start, length));
      job.told.push_back({{"name", name}, {"type", type ? type.get() : ""}, {"content", text.get()}});
    }
    g_task_return_boolean(task, TRUE);
  }

  static void filesRead(GObject*, GAsyncResult* result, gpointer self) {
    GError* raw = nullptr;
    g_task_propagate_boolean(G_TASK(result), &raw);
    const GErrorPtr error(raw);
    // The page is gone, and this with it.
    if (error) return;
    auto& job = *static_cast<Job*>(g_task_get_task_data(G_TASK(result)));
    static_cast<FileDrop*>(self)->handOver(job);
  }

  void handOver(const Job& job) {
    auto& state = PageState::of(view_);
    if (!job.complaint.empty()) {
      engine_.notify(job.complaint);
      state.end(this);
      return;
    }
    const double zoom = webkit_web_view_get_zoom_level(view_);
    const auto text = job.told.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert(&arguments, "files", "s", text.c_str());
    g_variant_dict_insert(&arguments, "x", "d", x_ / zoom);
    g_variant_dict_insert(&arguments, "y", "d", y_ / zoom);
    webkit_web_view_call_async_javascript_function(view_, dropScript, -1, g_variant_dict_end(&arguments),
                                                   "velkin", nullptr, cancellable_.get(), handedOver, this);
  }

  static void handedOver(GObject* view, GAsyncResult* result, gpointer self) {
    GError* raw = nullptr;
    const auto value = GObjectPtr<JSCValue>::adopt(
        webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(view), result, &raw));
    const GErrorPtr error(raw);
    if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
    if (error) debugLog("PageFileDrops", "handOver(_:)", forLog(error->message));
    auto* drop = static_cast<FileDrop*>(self);
    if (!value || !jsc_value_to_boolean(value.get())) drop->engine_.notify("The page takes no files there");
    PageState::of(WEBKIT_WEB_VIEW(view)).end(drop);
  }

  WebKitWebView* view_;
  WebEngine& engine_;
  double x_;
  double y_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
};

}  // namespace

void serveFileDrops(WebKitWebView* view, WebEngine& engine) {
  GtkDropTarget* target = gtk_drop_target_new(GDK_TYPE_FILE_LIST, GDK_ACTION_COPY);
  // Before the engine's own.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(target), GTK_PHASE_CAPTURE);
  g_signal_connect(
      target, "accept", G_CALLBACK(+[](GtkDropTarget*, GdkDrop* drop, gpointer) -> gboolean {
        GdkContentFormats* formats = gdk_drop_get_formats(drop);
        const auto all = gdk_content_formats_union_deserialize_gtypes(gdk_content_formats_ref(formats));
        const bool hasFiles = gdk_content_formats_contain_gtype(all, GDK_TYPE_FILE_LIST) != FALSE;
        gdk_content_formats_unref(all);
        return hasFiles && gdk_drop_get_drag(drop) == nullptr && !mayBeOfAPage(formats);
      }),
      nullptr);
  g_signal_connect(
      target, "drop",
      G_CALLBACK(
          +[](GtkDropTarget* controller, const GValue* value, double x, double y, gpointer data) -> gboolean {
            auto* page = WEBKIT_WEB_VIEW(gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(controller)));
            PageState::of(page).add(std::make_unique<FileDrop>(
                page, *static_cast<WebEngine*>(data), static_cast<GSList*>(g_value_get_boxed(value)), x, y));
            return TRUE;
          }),
      &engine);
  gtk_widget_add_controller(GTK_WIDGET(view), GTK_EVENT_CONTROLLER(target));
}

}  // namespace platform
