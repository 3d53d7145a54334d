#include "Platform/Gtk/GtkDialogs.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/Gtk/Toolkit.h"
#include "Platform/NSView.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr const char* folders = "Folders";

GtkWindow* windowUnder(const NSView* view) {
  if (view == nullptr) return windowWithKeyboard();
  // What a view is made of isn't its value.
  auto* based = dynamic_cast<GtkViewBase*>(const_cast<NSView*>(view));
  auto* root = based != nullptr ? gtk_widget_get_root(based->widget()) : nullptr;
  return root != nullptr && GTK_IS_WINDOW(root) && gtk_widget_get_mapped(GTK_WIDGET(root)) ? GTK_WINDOW(root)
                                                                                           : nullptr;
}

/// One that is open: it holds the popover, and goes with the window at which it stands.
class OpenSheet : public std::enable_shared_from_this<OpenSheet> {
 public:
  OpenSheet(GtkWindow* window, std::shared_ptr<const void> hold)
      : window_(window), hold_(std::move(hold)), self_(nullptr) {}
  ~OpenSheet() { leaveWindow(); }
  OpenSheet(const OpenSheet&) = delete;
  OpenSheet& operator=(const OpenSheet&) = delete;

  void opened(toolkit::Dismiss dismiss) {
    if (isOver_ || window_ == nullptr) return;
    dismiss_ = std::move(dismiss);
    self_ = shared_from_this();
    for (const char* signal : {"unmap", "destroy"}) {
      g_signal_connect_swapped(window_, signal, G_CALLBACK(+[](OpenSheet* sheet) {
                                 const auto alive = sheet->shared_from_this();
                                 sheet->leaveWindow();
                                 if (const auto end = std::exchange(sheet->dismiss_, {})) end();
                               }),
                               this);
    }
  }

  /// Not every window manager does it by itself.
  void giveBackTheKeyboard() {
    if (window_ != nullptr && gtk_widget_get_mapped(GTK_WIDGET(window_))) gtk_window_present(window_);
  }

  void over() {
    const auto alive = shared_from_this();
    isOver_ = true;
    dismiss_ = {};
    hold_.reset();
    leaveWindow();
    self_.reset();
  }

 private:
  void leaveWindow() {
    if (window_ == nullptr) return;
    g_signal_handlers_disconnect_by_data(window_, this);
    window_ = nullptr;
  }

  GtkWindow* window_;
  std::shared_ptr<const void> hold_;
  toolkit::Dismiss dismiss_;
  bool isOver_ = false;
  /// As long as the window may end it.
  std::shared_ptr<OpenSheet> self_;
};

template <class Completion, class Value>
void tellLater(Completion completion, Value value) {
  DispatchQueue::main().async([completion = std::move(completion), value = std::move(value)] {
    if (completion) completion(value);
  });
}

}  // namespace

GtkDialogs::GtkDialogs(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

GtkDialogs::~GtkDialogs() { standAt(nullptr); }

void GtkDialogs::standAt(GtkWindow* window) {
  if (window_ != nullptr)
    g_object_remove_weak_pointer(G_OBJECT(window_), reinterpret_cast<gpointer*>(&window_));
  window_ = window;
  if (window_ != nullptr) g_object_add_weak_pointer(G_OBJECT(window_), reinterpret_cast<gpointer*>(&window_));
}

GtkWindow* GtkDialogs::windowFor(const NSView* view) {
  auto* found = windowUnder(view);
  // Right after a dialogue the keyboard is on its way back to the window at which that one stood.
  const bool isOnItsWay = found == nullptr && view == nullptr && window_ != nullptr &&
                          gtk_widget_get_mapped(GTK_WIDGET(window_)) != FALSE;
  if (isOnItsWay) return window_;
  standAt(found);
  return found;
}

void GtkDialogs::show(const NSAlert& alert, const NSView* view, NSAlert::Completion completion) {
  surroundings_.startToolkit();
  auto* window = windowFor(view);
  const auto sheet = std::make_shared<OpenSheet>(window, surroundings_.holdPopover());
  sheet->opened(toolkit::ask(window, alert, [sheet, completion = std::move(completion)](std::size_t button) {
    sheet->giveBackTheKeyboard();
    sheet->over();
    tellLater(completion, button);
  }));
}

void GtkDialogs::show(const NSSavePanel& panel, const NSView* view, NSSavePanel::Completion completion) {
  surroundings_.startToolkit();
  auto* window = windowFor(view);
  const auto sheet = std::make_shared<OpenSheet>(window, surroundings_.holdPopover());
  // The desktop's dialogues have one line for a title: the message tells more.
  sheet->opened(toolkit::askForFile(
      window,
      {.isSaving = true,
       .title = panel.message.empty() ? panel.title : panel.message,
       .name = panel.nameFieldStringValue,
       .folder = folderFor(panel.use),
       .types = panel.allowedFileTypes},
      [this, alive = isAlive_.watch(), sheet, panel, view,
       completion = std::move(completion)](std::optional<NSSavePanel::Choice> choice) {
        const bool isPresent(alive);
        sheet->giveBackTheKeyboard();
        if (!choice || !isPresent) {
          sheet->over();
          return tellLater(completion, std::optional<NSSavePanel::Choice>());
        }
        rememberFolder(panel.use, choice->path);
        for (std::size_t i = 0; i < panel.allowedFileTypes.size(); ++i) {
          if (choice->path.ends_with("." + panel.allowedFileTypes[i].extension)) choice->fileType = i;
        }
        auto complete = panel.withExtension(choice->path, choice->fileType);
        std::error_code error;
        // The dialogue asked about the name as it was typed.
        const bool isToBeAsked = complete != choice->path && std::filesystem::exists(complete, error);
        choice->path = std::move(complete);
        if (isToBeAsked) {
          askToReplace(view, *choice, completion);
        } else {
          tellLater(completion, choice);
        }
        sheet->over();
      }));
}

void GtkDialogs::askToReplace(const NSView* view, NSSavePanel::Choice choice,
                              NSSavePanel::Completion completion) {
  const NSAlert question{
      .messageText = "Replace “" + std::filesystem::path(choice.path).filename().string() + "”?",
      .informativeText = "A file of this name is there already. What it holds will be lost.",
      .buttons = {{"Cancel", NSAlert::Button::Role::cancel}, {"Replace", NSAlert::Button::Role::destroy}}};
  show(question, view, [choice = std::move(choice), completion = std::move(completion)](std::size_t button) {
    const bool isReplaced = button == 1;
    if (completion) completion(isReplaced ? std::optional(choice) : std::nullopt);
  });
}

void GtkDialogs::show(const NSOpenPanel& panel, const NSView* view, NSOpenPanel::Completion completion) {
  surroundings_.startToolkit();
  auto* window = windowFor(view);
  const auto sheet = std::make_shared<OpenSheet>(window, surroundings_.holdPopover());
  sheet->opened(
      toolkit::askForFile(window,
                          {.isSaving = false,
                           .title = panel.title,
                           .name = {},
                           .folder = folderFor(panel.use),
                           .types = panel.allowedFileTypes},
                          [this, alive = isAlive_.watch(), sheet, use = panel.use,
                           completion = std::move(completion)](std::optional<NSSavePanel::Choice> choice) {
                            sheet->giveBackTheKeyboard();
                            sheet->over();
                            if (choice && alive) rememberFolder(use, choice->path);
                            tellLater(completion, choice ? std::optional(choice->path) : std::nullopt);
                          }));
}

std::string GtkDialogs::folderFor(const std::string& use) const {
  if (!use.empty()) {
    GKeyFile* known = g_key_file_new();
    g_key_file_load_from_file(known, surroundings_.foldersFile().c_str(), G_KEY_FILE_NONE, nullptr);
    const GStringPtr folder(g_key_file_get_string(known, folders, use.c_str(), nullptr));
    g_key_file_free(known);
    std::error_code error;
    if (folder && std::filesystem::is_directory(folder.get(), error)) return folder.get();
  }
  const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
  return documents != nullptr ? documents : g_get_home_dir();
}

void GtkDialogs::rememberFolder(const std::string& use, const std::string& path) const {
  if (use.empty()) return;
  const auto file = surroundings_.foldersFile();
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), error);
  GKeyFile* known = g_key_file_new();
  g_key_file_load_from_file(known, file.c_str(), G_KEY_FILE_NONE, nullptr);
  g_key_file_set_string(known, folders, use.c_str(), std::filesystem::path(path).parent_path().c_str());
  // A folder that isn't remembered is no loss that anybody should hear of.
  g_key_file_save_to_file(known, file.c_str(), nullptr);
  g_key_file_free(known);
}

}  // namespace platform
