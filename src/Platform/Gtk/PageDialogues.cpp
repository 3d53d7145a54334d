#include "Platform/Gtk/PageDialogues.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageQuestions.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/Toolkit.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtk/gtkunixprint.h>

namespace platform {

namespace {

class FileChoice : public PageDialogue {
 public:
  FileChoice(WebKitWebView* view, WebEngine& engine, WebKitFileChooserRequest* request)
      : view_(view),
        request_(GObjectPtr<WebKitFileChooserRequest>::retain(request)),
        pin_(engine.popover().keepOpen()) {
    const bool takesSeveral = webkit_file_chooser_request_get_select_multiple(request) != FALSE;
    dismiss_ = toolkit::askForFiles(windowOf(view),
                                    {.title = takesSeveral ? "Choose Files" : "Choose a File",
                                     .takesSeveral = takesSeveral,
                                     .filter = webkit_file_chooser_request_get_mime_types_filter(request)},
                                    [this](const std::vector<std::string>& paths) { chosen(paths); });
  }

  ~FileChoice() override {
    if (dismiss_) dismiss_();
    if (request_) webkit_file_chooser_request_cancel(request_.get());
  }

 private:
  void chosen(const std::vector<std::string>& paths) {
    dismiss_ = {};
    if (!paths.empty()) select(paths);
    PageState::of(view_).end(this);
  }

  void select(const std::vector<std::string>& paths) {
    const auto request = std::exchange(request_, {});
    std::vector<const char*> pointers;
    pointers.reserve(paths.size() + 1);
    for (const auto& path : paths) pointers.push_back(path.c_str());
    pointers.push_back(nullptr);
    webkit_file_chooser_request_select_files(request.get(), pointers.data());
  }

  WebKitWebView* view_;
  GObjectPtr<WebKitFileChooserRequest> request_;
  std::shared_ptr<void> pin_;
  toolkit::Dismiss dismiss_;
};

gboolean runFileChooser(WebKitWebView* view, WebKitFileChooserRequest* request, gpointer engine) {
  auto& state = PageState::of(view);
  if (state.open<FileChoice>() != nullptr) {
    webkit_file_chooser_request_cancel(request);
  } else {
    state.add(std::make_unique<FileChoice>(view, *static_cast<WebEngine*>(engine), request));
  }
  return TRUE;
}

/// Prints what the operation was made for. It holds the view until that is done, whoever lets go of it.
void print(WebKitWebView* view, WebKitPrintOperation* operation, GtkPrintUnixDialog* dialog) {
  const auto settings = GObjectPtr<GtkPrintSettings>::adopt(gtk_print_unix_dialog_get_settings(dialog));
  webkit_print_operation_set_print_settings(operation, settings.get());
  webkit_print_operation_set_page_setup(operation, gtk_print_unix_dialog_get_page_setup(dialog));
  g_object_ref(view);
  g_signal_connect_data(
      operation, "finished", G_CALLBACK(+[](WebKitPrintOperation* done, gpointer) { g_object_unref(done); }),
      view, [](gpointer printed, GClosure*) { g_object_unref(printed); }, GConnectFlags(0));
  webkit_print_operation_print(WEBKIT_PRINT_OPERATION(g_object_ref(operation)));
}

class PrintDialogue : public PageDialogue {
 public:
  PrintDialogue(WebKitWebView* view, WebEngine& engine, WebKitPrintOperation* operation,
                std::function<void()> ended = {})
      : view_(view),
        ended_(std::move(ended)),
        operation_(GObjectPtr<WebKitPrintOperation>::retain(operation)),
        pin_(engine.popover().keepOpen()),
        dialog_(gtk_print_unix_dialog_new("Print", windowOf(view))) {
    auto* dialog = GTK_PRINT_UNIX_DIALOG(dialog_);
    gtk_print_unix_dialog_set_manual_capabilities(
        dialog, GtkPrintCapabilities(GTK_PRINT_CAPABILITY_NUMBER_UP | GTK_PRINT_CAPABILITY_NUMBER_UP_LAYOUT |
                                     GTK_PRINT_CAPABILITY_PAGE_SET | GTK_PRINT_CAPABILITY_REVERSE |
                                     GTK_PRINT_CAPABILITY_COPIES | GTK_PRINT_CAPABILITY_COLLATE |
                                     GTK_PRINT_CAPABILITY_SCALE));
    gtk_print_unix_dialog_set_embed_page_setup(dialog, TRUE);
    if (auto* settings = webkit_print_operation_get_print_settings(operation))
      gtk_print_unix_dialog_set_settings(dialog, settings);
    if (auto* setup = webkit_print_operation_get_page_setup(operation))
      gtk_print_unix_dialog_set_page_setup(dialog, setup);
    gtk_window_set_modal(GTK_WINDOW(dialog_), TRUE);
    g_signal_connect(dialog_, "response", G_CALLBACK(+[](GtkDialog*, int response, gpointer self) {
                       static_cast<PrintDialogue*>(self)->answered(response);
                     }),
                     this);
    g_signal_connect_swapped(dialog_, "destroy",
                             G_CALLBACK(+[](PrintDialogue* self) { self->answered(GTK_RESPONSE_CANCEL); }),
                             this);
    gtk_window_present(GTK_WINDOW(dialog_));
  }

  ~PrintDialogue() override {
    g_signal_handlers_disconnect_by_data(dialog_, this);
    gtk_window_destroy(GTK_WINDOW(dialog_));
    if (ended_) ended_();
  }

 private:
  void answered(int response) {
    if (response == GTK_RESPONSE_OK) print(view_, operation_.get(), GTK_PRINT_UNIX_DIALOG(dialog_));
    PageState::of(view_).end(this);
  }

  WebKitWebView* view_;
  std::function<void()> ended_;
  GObjectPtr<WebKitPrintOperation> operation_;
  std::shared_ptr<void> pin_;
  GtkWidget* dialog_;
};

gboolean runPrintDialogue(WebKitWebView* view, WebKitPrintOperation* operation, gpointer engine) {
  auto& state = PageState::of(view);
  // A view that is in no window yet has nobody to ask.
  if (windowOf(view) != nullptr && state.open<PrintDialogue>() == nullptr)
    state.add(std::make_unique<PrintDialogue>(view, *static_cast<WebEngine*>(engine), operation));
  return TRUE;
}

}  // namespace

void serveDialogues(WebKitWebView* view, WebEngine& engine) {
  g_signal_connect(view, "run-file-chooser", G_CALLBACK(runFileChooser), &engine);
  g_signal_connect(view, "print", G_CALLBACK(runPrintDialogue), &engine);
  answerScriptQuestions(view, engine);
}

void askToPrint(WebKitWebView* view, WebEngine& engine, const NSPrintInfo& info,
                std::function<void()> ended) {
  auto& state = PageState::of(view);
  if (windowOf(view) == nullptr || state.open<PrintDialogue>() != nullptr) return ended();
  const auto operation = GObjectPtr<WebKitPrintOperation>::adopt(webkit_print_operation_new(view));
  const auto setup = GObjectPtr<GtkPageSetup>::adopt(pageSetupFor(info));
  const auto settings = GObjectPtr<GtkPrintSettings>::adopt(gtk_print_settings_new());
  constexpr double percent = 100;
  gtk_print_settings_set_scale(settings.get(), info.scalingFactor * percent);
  webkit_print_operation_set_page_setup(operation.get(), setup.get());
  webkit_print_operation_set_print_settings(operation.get(), settings.get());
  state.add(std::make_unique<PrintDialogue>(view, engine, operation.get(), std::move(ended)));
}

GtkPageSetup* pageSetupFor(const NSPrintInfo& info) {
  auto* const setup = gtk_page_setup_new();
  // A4 or Letter, by the locale.
  GtkPaperSize* size = gtk_paper_size_new(gtk_paper_size_get_default());
  gtk_page_setup_set_paper_size(setup, size);
  gtk_paper_size_free(size);
  gtk_page_setup_set_top_margin(setup, info.topMargin, GTK_UNIT_POINTS);
  gtk_page_setup_set_bottom_margin(setup, info.bottomMargin, GTK_UNIT_POINTS);
  gtk_page_setup_set_left_margin(setup, info.leftMargin, GTK_UNIT_POINTS);
  gtk_page_setup_set_right_margin(setup, info.rightMargin, GTK_UNIT_POINTS);
  return setup;
}

}  // namespace platform
