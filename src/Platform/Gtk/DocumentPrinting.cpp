#include "Platform/Gtk/DocumentPrinting.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageDialogues.h"
#include "Platform/WholeFile.h"

#include <memory>
#include <utility>

#include <glib/gstdio.h>
#include <gtk/gtkunixprint.h>
#include <unistd.h>

namespace platform {

namespace {

using Ended = std::function<void(std::optional<NSError>)>;

NSError printingError(const std::string& why) { return {NSCocoaErrorDomain, 1, why}; }

/// A document in a file that only we know, gone with this.
class KeptDocument {
 public:
  explicit KeptDocument(const std::string& bytes) {
    const GStringPtr name(g_build_filename(g_get_user_runtime_dir(), "velkin-print-XXXXXX", nullptr));
    const int file = g_mkstemp(name.get());
    if (file < 0) return;
    close(file);
    if (replaceFile(name.get(), bytes)) {
      path_ = name.get();
    } else {
      g_unlink(name.get());
    }
  }
  ~KeptDocument() {
    if (!path_.empty()) g_unlink(path_.c_str());
  }
  KeptDocument(const KeptDocument&) = delete;
  KeptDocument& operator=(const KeptDocument&) = delete;

  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
};

/// From the dialogue to the paper.
struct PaperRun {
  explicit PaperRun(const std::string& pdf) : document(pdf) {}
  KeptDocument document;
  Ended ended;
};

std::optional<NSError> errorOf(const GErrorPtr& error) {
  return error ? std::optional(printingError(error->message)) : std::nullopt;
}

/// Sends the document to the printer that was chosen.
void print(std::unique_ptr<PaperRun> run, GtkPrintUnixDialog* dialog) {
  GtkPrinter* const printer = gtk_print_unix_dialog_get_selected_printer(dialog);
  if (printer == nullptr) return run->ended(printingError("No printer was chosen"));
  const auto settings = GObjectPtr<GtkPrintSettings>::adopt(gtk_print_unix_dialog_get_settings(dialog));
  // Into a file it goes as it is.
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_FILE_FORMAT, "pdf");
  const auto job = GObjectPtr<GtkPrintJob>::adopt(
      gtk_print_job_new("Velkin", printer, settings.get(), gtk_print_unix_dialog_get_page_setup(dialog)));
  GError* raw = nullptr;
  gtk_print_job_set_source_file(job.get(), run->document.path().c_str(), &raw);
  if (GErrorPtr error(raw); error) return run->ended(errorOf(error));
  gtk_print_job_send(
      job.get(),
      [](GtkPrintJob*, gpointer data, const GError* error) {
        static_cast<PaperRun*>(data)->ended(error == nullptr ? std::nullopt
                                                             : std::optional(printingError(error->message)));
      },
      run.release(), [](gpointer data) { std::default_delete<PaperRun>()(static_cast<PaperRun*>(data)); });
}

void answered(GtkDialog* dialog, int response, gpointer data) {
  std::unique_ptr<PaperRun> run(static_cast<PaperRun*>(data));
  g_signal_handlers_disconnect_by_data(dialog, data);
  if (response == GTK_RESPONSE_OK) {
    print(std::move(run), GTK_PRINT_UNIX_DIALOG(dialog));
  } else {
    run->ended(std::nullopt);
  }
  if (response != GTK_RESPONSE_DELETE_EVENT) gtk_window_destroy(GTK_WINDOW(dialog));
}

}  // namespace

void showPrintDialogue(const std::string& pdf, const NSPrintInfo& info, GtkWindow* parent, Ended ended) {
  auto run = std::make_unique<PaperRun>(pdf);
  run->ended = std::move(ended);
  if (run->document.path().empty()) return run->ended(printingError("No file can be made to print from"));
  GtkWidget* const dialog = gtk_print_unix_dialog_new("Print", parent);
  auto* const printing = GTK_PRINT_UNIX_DIALOG(dialog);
  // The pages are laid out already: what is left is how many, and on what.
  gtk_print_unix_dialog_set_manual_capabilities(
      printing, GtkPrintCapabilities(GTK_PRINT_CAPABILITY_COPIES | GTK_PRINT_CAPABILITY_COLLATE |
                                     GTK_PRINT_CAPABILITY_GENERATE_PDF));
  const auto setup = GObjectPtr<GtkPageSetup>::adopt(pageSetupFor(info));
  gtk_print_unix_dialog_set_page_setup(printing, setup.get());
  gtk_window_set_modal(GTK_WINDOW(dialog), TRUE);
  g_signal_connect(dialog, "response", G_CALLBACK(answered), run.release());
  gtk_window_present(GTK_WINDOW(dialog));
}

}  // namespace platform
