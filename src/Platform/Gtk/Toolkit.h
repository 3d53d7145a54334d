#pragma once

#include "Platform/NSAlert.h"
#include "Platform/NSSavePanel.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

// What the versions of the toolkit that we build with do in different ways, chosen when the program is
// compiled.
namespace toolkit {

/// Has a screen reader say the text, where the toolkit can; else nothing happens.
void announce(GtkWidget* widget, const std::string& text);
/// The role of what holds news: one whose name assistive tools can read.
GtkAccessibleRole newsRole();
void loadStyle(GtkCssProvider* provider, const std::string& text);
/// Shows the window on behalf of something that the user did at `time`.
void presentWithTime(GtkWindow* window, std::uint32_t time);

/// Takes back what was asked; the answer is then that of Escape. To be called at most once, and not after the
/// answer.
using Dismiss = std::function<void()>;

/// `answer` is called once.
Dismiss ask(GtkWindow* parent, const NSAlert& alert, std::function<void(std::size_t button)> answer);

/// A question of a page, as a window of its own.
struct PageQuestion {
  struct Response {
    const char* id;
    const char* label;
  };
  std::string heading;
  /// May be empty.
  std::string body;
  /// May be none.
  GtkWidget* content = nullptr;
  std::vector<Response> responses;
  /// The response that stands out, the one of Return, and the one of Escape and of closing.
  const char* suggested = nullptr;
  const char* byDefault = nullptr;
  const char* byClosing = nullptr;
};
/// Not on show yet. It emits "response" with a response's id, and goes with its parent.
GtkWidget* makePageQuestion(GtkWindow* parent, const PageQuestion& question);

/// A window with one page of settings in it, not on show yet.
GtkWindow* makeSettingsWindow(GtkWidget* page);

struct FileQuestion {
  bool isSaving = false;
  std::string title;
  std::string name;
  /// A path, or empty.
  std::string folder;
  std::vector<NSFileType> types;
};
/// The path and the position of the type; nothing if the user cancels. `answer` is called once.
using FileAnswer = std::function<void(std::optional<NSSavePanel::Choice>)>;
Dismiss askForFile(GtkWindow* parent, const FileQuestion& question, FileAnswer answer);

struct FilesQuestion {
  std::string title;
  bool takesSeveral = false;
  /// May be none.
  GtkFileFilter* filter = nullptr;
};
/// Paths of files that exist; none if the user cancels. `answer` is called once, or never after a dismissal.
using FilesAnswer = std::function<void(std::vector<std::string>)>;
Dismiss askForFiles(GtkWindow* parent, const FilesQuestion& question, FilesAnswer answer);

}  // namespace toolkit
}  // namespace platform
