#pragma once

#include <functional>
#include <string>

#include <gtk/gtk.h>

namespace platform {

/// Asks the user whether a site may do something, before the window of its page. Taken down unanswered when
/// it ends. Main thread.
class SiteQuestion {
 public:
  enum class Answer {
    allow,
    block,
    /// Closed, by the user or with its window: nothing to remember.
    later
  };

  /// `answered` is called once, and may end this.
  SiteQuestion(GtkWindow* parent, const std::string& question, const std::string& site,
               std::function<void(Answer)> answered);
  ~SiteQuestion();
  SiteQuestion(const SiteQuestion&) = delete;
  SiteQuestion& operator=(const SiteQuestion&) = delete;

 private:
  void end(Answer answer);

  GtkWidget* dialog_;
  std::function<void(Answer)> answered_;
};

}  // namespace platform
