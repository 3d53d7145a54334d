#include "Platform/Gtk/SiteQuestion.h"

#include "Platform/Gtk/Toolkit.h"

#include <string_view>
#include <utility>

namespace platform {

SiteQuestion::SiteQuestion(GtkWindow* parent, const std::string& question, const std::string& site,
                           std::function<void(Answer)> answered)
    : dialog_(toolkit::makePageQuestion(parent,
                                        {.heading = question,
                                         .body = site + "\n\nVelkin will remember your answer for this site.",
                                         .responses = {{"block", "Block"}, {"allow", "Allow"}},
                                         .suggested = "allow",
                                         .byDefault = "block",
                                         .byClosing = "later"})),
      answered_(std::move(answered)) {
  g_signal_connect(dialog_, "response", G_CALLBACK(+[](GtkWidget*, const char* response, gpointer self) {
                     const std::string_view given(response);
                     static_cast<SiteQuestion*>(self)->end(given == "allow"   ? Answer::allow
                                                           : given == "block" ? Answer::block
                                                                              : Answer::later);
                   }),
                   this);
  // With the window that it stands before, and no answer.
  g_signal_connect_swapped(dialog_, "destroy",
                           G_CALLBACK(+[](SiteQuestion* self) { self->end(Answer::later); }), this);
  gtk_window_present(GTK_WINDOW(dialog_));
}

SiteQuestion::~SiteQuestion() {
  if (dialog_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(dialog_, this);
  gtk_window_destroy(GTK_WINDOW(dialog_));
}

void SiteQuestion::end(Answer answer) {
  g_signal_handlers_disconnect_by_data(std::exchange(dialog_, nullptr), this);
  const auto answered = std::move(answered_);
  answered(answer);
}

}  // namespace platform
