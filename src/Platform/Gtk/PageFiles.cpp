#include "Platform/Gtk/PageFiles.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageDialogues.h"
#include "Platform/WebArchive.h"
#include "Platform/WholeFile.h"

#include <memory>
#include <string>
#include <utility>

#include <glib/gstdio.h>
#include <unistd.h>

namespace platform {

namespace {

using Data = tl::expected<std::string, NSError>;

constexpr std::size_t pdfLimit = std::size_t{2} << 30U;

NSError pageError(const char* why) { return {"WebKitErrorDomain", 1, why}; }

/// Takes a file off the list of those used last. The toolkit puts what it prints there, a while after it has
/// told that the printing is over.
class RecentFileEraser {
 public:
  static void erase(std::string uri) { new RecentFileEraser(std::move(uri)); }

 private:
  /// Longer than the toolkit takes on a busy machine; nothing comes of a print that failed.
  static constexpr guint limitSeconds = 30;

  explicit RecentFileEraser(std::string uri) : uri_(std::move(uri)), list_(gtk_recent_manager_get_default()) {
    handler_ = g_signal_connect_swapped(list_, "changed", G_CALLBACK(tryToErase), this);
    g_timeout_add_seconds(
        limitSeconds,
        +[](gpointer self) -> gboolean {
          delete static_cast<RecentFileEraser*>(self);
          return G_SOURCE_REMOVE;
        },
        this);
    tryToErase(this);
  }
  ~RecentFileEraser() { g_signal_handler_disconnect(list_, handler_); }
  RecentFileEraser(const RecentFileEraser&) = delete;
  RecentFileEraser& operator=(const RecentFileEraser&) = delete;

  static void tryToErase(RecentFileEraser* self) {
    gtk_recent_manager_remove_item(self->list_, self->uri_.c_str(), nullptr);
  }

  std::string uri_;
  GtkRecentManager* list_;
  gulong handler_ = 0;
};

/// A print into a file of our own, which is gone with it.
struct PdfRun {
  explicit PdfRun(WKWebView::DataCompletion ended) : completion(std::move(ended)) {
    const GStringPtr name(g_build_filename(g_get_user_runtime_dir(), "velkin-page-XXXXXX", nullptr));
    if (const int file = g_mkstemp(name.get()); file >= 0) {
      close(file);
      path = name.get();
      const GStringPtr address(g_filename_to_uri(path.c_str(), nullptr, nullptr));
      uri = address.get();
    }
  }
  ~PdfRun() {
    if (path.empty()) return;
    RecentFileEraser::erase(uri);
    g_unlink(path.c_str());
  }
  PdfRun(const PdfRun&) = delete;
  PdfRun& operator=(const PdfRun&) = delete;

  WKWebView::DataCompletion completion;
  std::string path;
  std::string uri;
  GObjectPtr<WebKitPrintOperation> operation;
  std::string failure;
};

void printEnded(WebKitPrintOperation*, gpointer data) {
  const std::unique_ptr<PdfRun> run(static_cast<PdfRun*>(data));
  if (!run->failure.empty()) return run->completion(tl::unexpected(pageError(run->failure.c_str())));
  auto contents = readWholeFile(run->path, pdfLimit);
  if (!contents) return run->completion(tl::unexpected(pageError(contents.error().why.c_str())));
  if (!contents->bytes.starts_with("%PDF-")) {
    return run->completion(tl::unexpected(pageError("Nothing was printed")));
  }
  run->completion(std::move(contents->bytes));
}

struct SaveRun {
  bool hasDoctype;
  WKWebView::DataCompletion completion;
};

Data bytesOf(GInputStream* stream) {
  const auto memory = GObjectPtr<GOutputStream>::adopt(g_memory_output_stream_new_resizable());
  GError* error = nullptr;
  // It is in memory already.
  g_output_stream_splice(memory.get(), stream, G_OUTPUT_STREAM_SPLICE_CLOSE_TARGET, nullptr, &error);
  if (const GErrorPtr owned(error); owned) return tl::unexpected(pageError(owned->message));
  auto* const buffer = G_MEMORY_OUTPUT_STREAM(memory.get());
  return std::string(static_cast<const char*>(g_memory_output_stream_get_data(buffer)),
                     g_memory_output_stream_get_data_size(buffer));
}

void saveEnded(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<SaveRun> run(static_cast<SaveRun*>(data));
  GError* error = nullptr;
  const auto stream =
      GObjectPtr<GInputStream>::adopt(webkit_web_view_save_finish(WEBKIT_WEB_VIEW(view), result, &error));
  if (const GErrorPtr owned(error); owned) return run->completion(tl::unexpected(pageError(owned->message)));
  auto bytes = bytesOf(stream.get());
  if (bytes && run->hasDoctype) bytes = mhtmlWithDoctype(*std::move(bytes));
  run->completion(std::move(bytes));
}

}  // namespace

void printToPDF(WebKitWebView* view, const WKPDFConfiguration& configuration,
                WKWebView::DataCompletion completion) {
  auto run = std::make_unique<PdfRun>(std::move(completion));
  if (run->path.empty()) return run->completion(tl::unexpected(pageError("No file can be made to print to")));
  const auto settings = GObjectPtr<GtkPrintSettings>::adopt(gtk_print_settings_new());
  // The name of the toolkit's own printer, as it is in the user's language.
  gtk_print_settings_set_printer(settings.get(), g_dgettext("gtk40", "Print to File"));
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_FILE_FORMAT, "pdf");
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_URI, run->uri.c_str());
  const double margin = configuration.margin;
  const auto setup = GObjectPtr<GtkPageSetup>::adopt(pageSetupFor(
      {.leftMargin = margin, .rightMargin = margin, .topMargin = margin, .bottomMargin = margin}));
  run->operation = GObjectPtr<WebKitPrintOperation>::adopt(webkit_print_operation_new(view));
  auto* const operation = run->operation.get();
  webkit_print_operation_set_print_settings(operation, settings.get());
  webkit_print_operation_set_page_setup(operation, setup.get());
  g_signal_connect(operation, "failed", G_CALLBACK(+[](WebKitPrintOperation*, GError* error, gpointer data) {
                     static_cast<PdfRun*>(data)->failure = error->message;
                   }),
                   run.get());
  // It comes after a failure, too.
  g_signal_connect(operation, "finished", G_CALLBACK(printEnded), run.release());
  webkit_print_operation_print(operation);
}

void saveAsMHTML(WebKitWebView* view, bool hasDoctype, WKWebView::DataCompletion completion) {
  webkit_web_view_save(view, WEBKIT_SAVE_MODE_MHTML, nullptr, saveEnded,
                       std::make_unique<SaveRun>(SaveRun{hasDoctype, std::move(completion)}).release());
}

}  // namespace platform
