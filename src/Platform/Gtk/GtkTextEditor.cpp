#include "Platform/Gtk/GtkTextEditor.h"

#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/GtkLongWords.h"
#include "Platform/Gtk/GtkTextEdits.h"
#include "Platform/Gtk/KeyboardPlaces.h"
#include "Platform/NSPasteboard.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr int margin = 8;
constexpr int undoSteps = 1000;

/// A place in the text that moves with it, while something is fetched that belongs there.
class Place {
 public:
  Place(GtkTextBuffer* buffer, const GtkTextIter& at)
      : mark_(GObjectPtr<GtkTextMark>::retain(gtk_text_buffer_create_mark(buffer, nullptr, &at, FALSE))) {}
  ~Place() {
    if (!gtk_text_mark_get_deleted(mark_.get())) {
      gtk_text_buffer_delete_mark(gtk_text_mark_get_buffer(mark_.get()), mark_.get());
    }
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  std::size_t offset() const {
    GtkTextIter at;
    gtk_text_buffer_get_iter_at_mark(gtk_text_mark_get_buffer(mark_.get()), &at, mark_.get());
    return static_cast<std::size_t>(gtk_text_iter_get_offset(&at));
  }

 private:
  GObjectPtr<GtkTextMark> mark_;
};

}  // namespace

/// A file on its way into the text.
struct GtkTextEditor::FileReading {
  GtkTextEditor* editor;
  Alive::Watch alive;
  GObjectPtr<GFile> file;
  std::unique_ptr<Place> place;
};

GtkTextEditor::GtkTextEditor()
    : scrolled_(GObjectPtr<GtkWidget>::retain(gtk_scrolled_window_new())), editor_(gtk_text_view_new()) {
  buffer_ = GObjectPtr<GtkTextBuffer>::retain(gtk_text_view_get_buffer(view()));
  gtk_text_view_set_wrap_mode(view(), GTK_WRAP_WORD_CHAR);
  gtk_text_view_set_left_margin(view(), margin);
  gtk_text_view_set_right_margin(view(), margin);
  gtk_text_view_set_top_margin(view(), margin);
  gtk_text_view_set_bottom_margin(view(), margin);
  gtk_text_buffer_set_max_undo_levels(buffer_.get(), undoSteps);
  wrapLongWords(buffer_.get());
  // Off the screen the view gives the primary selection up, and the text's own with it, if nobody else holds
  // it.
  gtk_text_buffer_add_selection_clipboard(buffer_.get(), gtk_widget_get_primary_clipboard(editor_));
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled_.get()), editor_);
  gtk_widget_set_hexpand(scrolled_.get(), TRUE);
  gtk_widget_set_vexpand(scrolled_.get(), TRUE);
  connectBuffer();
  connectView();
}

GtkTextEditor::~GtkTextEditor() {
  isAlive_.end();
  g_signal_handlers_disconnect_by_data(buffer_.get(), this);
  g_signal_handlers_disconnect_by_data(editor_, this);
  GtkWidget* parent = gtk_widget_get_parent(scrolled_.get());
  if (parent != nullptr && GTK_IS_BOX(parent)) gtk_box_remove(GTK_BOX(parent), scrolled_.get());
  gtk_text_buffer_remove_selection_clipboard(buffer_.get(), gtk_widget_get_primary_clipboard(editor_));
}

void GtkTextEditor::connectBuffer() {
  g_signal_connect_swapped(buffer_.get(), "changed", G_CALLBACK(+[](GtkTextEditor* self) {
                             self->isChangedInStep_ = true;
                             if (self->stepDepth_ == 0) self->endStep();
                           }),
                           this);
  const auto begin = +[](GtkTextEditor* self) { self->beginStep(); };
  const auto end = +[](GtkTextEditor* self) {
    --self->stepDepth_;
    self->endStep();
  };
  for (const char* signal : {"begin-user-action", "undo", "redo"}) {
    g_signal_connect_swapped(buffer_.get(), signal, G_CALLBACK(begin), this);
  }
  for (const char* signal : {"end-user-action", "undo", "redo"}) {
    g_signal_connect_data(buffer_.get(), signal, G_CALLBACK(end), this, nullptr,
                          GConnectFlags(G_CONNECT_AFTER | G_CONNECT_SWAPPED));
  }
  // Whatever way it comes: by an input method, dragged from elsewhere, from the primary selection.
  g_signal_connect(
      buffer_.get(), "insert-text",
      G_CALLBACK(+[](GtkTextBuffer* buffer, GtkTextIter*, const char*, int length, gpointer data) {
        auto* self = static_cast<GtkTextEditor*>(data);
        // One byte is for what keeps steps of undo apart, for a moment.
        if (length <= 1 || self->hasRoomFor(static_cast<std::size_t>(length))) return;
        g_signal_stop_emission_by_name(buffer, "insert-text");
        self->refuse(Refusal::tooLong);
      }),
      this);
}

void GtkTextEditor::connectView() {
  g_signal_connect(editor_, "paste-clipboard", G_CALLBACK(+[](GtkTextView* view, gpointer self) {
                     g_signal_stop_emission_by_name(view, "paste-clipboard");
                     static_cast<GtkTextEditor*>(self)->paste();
                   }),
                   this);
  // It comes back scrolled to its start.
  g_signal_connect_data(editor_, "realize", G_CALLBACK(+[](GtkTextEditor* self) { self->showCursor(); }),
                        this, nullptr, GConnectFlags(G_CONNECT_AFTER | G_CONNECT_SWAPPED));
  // Copying with nothing selected keeps what is on the pasteboard.
  for (const char* signal : {"copy-clipboard", "cut-clipboard"}) {
    g_signal_connect(editor_, signal, G_CALLBACK(+[](GtkTextView* view, gpointer data) {
                       auto* self = static_cast<GtkTextEditor*>(data);
                       if (self->selectedRange().length > 0) return;
                       const auto* hint = g_signal_get_invocation_hint(view);
                       g_signal_stop_emission(view, hint->signal_id, hint->detail);
                     }),
                     this);
  }
  GtkDropTarget* files = gtk_drop_target_new(GDK_TYPE_FILE_LIST, GDK_ACTION_COPY);
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(files), GTK_PHASE_CAPTURE);
  g_signal_connect(
      files, "drop",
      G_CALLBACK(+[](GtkDropTarget*, const GValue* value, double x, double y, gpointer data) -> gboolean {
        auto* self = static_cast<GtkTextEditor*>(data);
        int left = 0;
        int top = 0;
        gtk_text_view_window_to_buffer_coords(self->view(), GTK_TEXT_WINDOW_WIDGET, static_cast<int>(x),
                                              static_cast<int>(y), &left, &top);
        GtkTextIter at;
        gtk_text_view_get_iter_at_location(self->view(), &at, left, top);
        const auto offset = static_cast<std::size_t>(gtk_text_iter_get_offset(&at));
        for (auto* entry = static_cast<GSList*>(g_value_get_boxed(value)); entry != nullptr;
             entry = entry->next) {
          self->insertFile(G_FILE(entry->data), offset);
        }
        return TRUE;
      }),
      this);
  gtk_widget_add_controller(editor_, GTK_EVENT_CONTROLLER(files));
}

void GtkTextEditor::endStep() {
  if (stepDepth_ > 0 || !std::exchange(isChangedInStep_, false)) return;
  // A copy: it may replace itself.
  const auto changed = textDidChange;
  if (changed) changed();
}

NSRect GtkTextEditor::frame() const {
  return {{0, 0},
          {static_cast<double>(gtk_widget_get_width(scrolled_.get())),
           static_cast<double>(gtk_widget_get_height(scrolled_.get()))}};
}

std::string GtkTextEditor::string() const { return textOf(buffer_.get()); }

bool GtkTextEditor::hasRoomFor(std::size_t bytes) const {
  const auto characters = static_cast<std::size_t>(gtk_text_buffer_get_char_count(buffer_.get()));
  // Reading the text's own length takes time: only near the limit.
  return characters * 4 + bytes <= maximumBytes || textOf(buffer_.get()).size() + bytes <= maximumBytes;
}

void GtkTextEditor::refuse(Refusal reason) {
  const auto refused = didRefuse;
  if (refused) refused(reason);
}

bool GtkTextEditor::setString(const std::string& text, UndoHistory history) {
  if (text.size() > maximumBytes) {
    refuse(Refusal::tooLong);
    return false;
  }
  const bool isForgotten = history == UndoHistory::forgotten;
  beginStep();
  if (isForgotten) gtk_text_buffer_begin_irreversible_action(buffer_.get());
  changeText(buffer_.get(), text);
  if (isForgotten) gtk_text_buffer_end_irreversible_action(buffer_.get());
  --stepDepth_;
  endStep();
  return true;
}

NSRange GtkTextEditor::selectedRange() const {
  GtkTextIter start;
  GtkTextIter end;
  gtk_text_buffer_get_selection_bounds(buffer_.get(), &start, &end);
  const int from = gtk_text_iter_get_offset(&start);
  return {static_cast<std::size_t>(from), static_cast<std::size_t>(gtk_text_iter_get_offset(&end) - from)};
}

void GtkTextEditor::setSelectedRange(NSRange range) {
  const auto length = static_cast<std::size_t>(gtk_text_buffer_get_char_count(buffer_.get()));
  const auto from = std::min(range.location, length);
  GtkTextIter start;
  GtkTextIter end;
  gtk_text_buffer_get_iter_at_offset(buffer_.get(), &start, static_cast<int>(from));
  gtk_text_buffer_get_iter_at_offset(buffer_.get(), &end,
                                     static_cast<int>(from + std::min(range.length, length - from)));
  gtk_text_buffer_select_range(buffer_.get(), &end, &start);
  showCursor();
}

bool GtkTextEditor::insertText(const std::string& text, NSRange replacementRange) {
  const auto inserted = wellFormed(text);
  if (!hasRoomFor(inserted.size())) {
    refuse(Refusal::tooLong);
    return false;
  }
  // The cursor goes behind the text within the same step.
  replaceText(buffer_.get(), replacementRange, inserted);
  showCursor();
  return true;
}

void GtkTextEditor::makeFirstResponder() {
  noteKeyboardClaim();
  gtk_widget_grab_focus(editor_);
}

void GtkTextEditor::showCursor() {
  gtk_text_view_scroll_mark_onscreen(view(), gtk_text_buffer_get_insert(buffer_.get()));
}

bool GtkTextEditor::canUndo() const { return gtk_text_buffer_get_can_undo(buffer_.get()) != FALSE; }
bool GtkTextEditor::canRedo() const { return gtk_text_buffer_get_can_redo(buffer_.get()) != FALSE; }

void GtkTextEditor::undo() {
  if (canUndo()) gtk_text_buffer_undo(buffer_.get());
}

void GtkTextEditor::redo() {
  if (canRedo()) gtk_text_buffer_redo(buffer_.get());
}

std::shared_ptr<void> GtkTextEditor::holdKeys() { return holdAllKeys(); }

void GtkTextEditor::setFont(SystemFont font) {
  look_.systemFont = font;
  style_.apply(editor_, look_);
}

void GtkTextEditor::setTextColor(std::optional<Color> color) {
  look_.foreground = color;
  style_.apply(editor_, look_);
}

void GtkTextEditor::setAccessibilityLabel(const std::string& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(editor_), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(), -1);
}

void GtkTextEditor::paste() {
  NSPasteboard::generalPasteboard().readItems(
      [this, alive = isAlive_.watch()](const NSPasteboardReading& reading) {
        if (!alive) return;
        if (const auto text = reading.string()) {
          insertText(*text, selectedRange());
        } else if (reading.failure == NSPasteboardReading::Failure::tooLong) {
          refuse(Refusal::tooLong);
        } else if (reading.failure == NSPasteboardReading::Failure::unreadable) {
          refuse(Refusal::unreadable);
        } else if (reading.failure == NSPasteboardReading::Failure::noAnswer) {
          refuse(Refusal::noAnswer);
        } else if (!reading.items.empty()) {
          refuse(Refusal::notText);
        }
      });
}

void GtkTextEditor::insertFile(GFile* file, std::size_t offset) {
  GtkTextIter at;
  gtk_text_buffer_get_iter_at_offset(buffer_.get(), &at, static_cast<int>(offset));
  auto reading = std::make_unique<FileReading>(FileReading{
      this, isAlive_.watch(), GObjectPtr<GFile>::retain(file), std::make_unique<Place>(buffer_.get(), at)});
  // First what it is: opening a pipe would wait for a writer, and the size is known before anything is read.
  g_file_query_info_async(
      file, G_FILE_ATTRIBUTE_STANDARD_TYPE "," G_FILE_ATTRIBUTE_STANDARD_SIZE, G_FILE_QUERY_INFO_NONE,
      G_PRIORITY_DEFAULT, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        std::unique_ptr<FileReading> asked(static_cast<FileReading*>(data));
        const auto info =
            GObjectPtr<GFileInfo>::adopt(g_file_query_info_finish(G_FILE(source), result, nullptr));
        if (!asked->alive) return;
        auto* editor = asked->editor;
        if (!info) return editor->refuse(Refusal::unreadable);
        if (g_file_info_get_file_type(info.get()) != G_FILE_TYPE_REGULAR)
          return editor->refuse(Refusal::notText);
        if (static_cast<std::size_t>(g_file_info_get_size(info.get())) > maximumBytes) {
          return editor->refuse(Refusal::tooLong);
        }
        g_file_load_partial_contents_async(
            G_FILE(source), nullptr,
            // It may have grown since, or say nothing of its size, as the system's own files do.
            [](const char*, goffset size, gpointer) -> gboolean {
              return static_cast<std::size_t>(size) <= maximumBytes;
            },
            [](GObject* loaded, GAsyncResult* loading, gpointer read) {
              std::unique_ptr<FileReading> whole(static_cast<FileReading*>(read));
              char* bytes = nullptr;
              gsize length = 0;
              const bool isRead = g_file_load_partial_contents_finish(G_FILE(loaded), loading, &bytes,
                                                                      &length, nullptr, nullptr) != FALSE;
              const GStringPtr owned(bytes);
              if (!whole->alive) return;
              if (!isRead) return whole->editor->refuse(Refusal::unreadable);
              whole->editor->fileRead(*whole, std::string(bytes, length));
            },
            asked.release());
      },
      reading.release());
}

void GtkTextEditor::fileRead(const FileReading& reading, const std::string& bytes) {
  if (bytes.size() > maximumBytes) return refuse(Refusal::tooLong);
  std::string_view text = bytes;
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  // A text has neither NULs nor anything else that isn't UTF-8.
  if (!g_utf8_validate_len(text.data(), text.size(), nullptr)) return refuse(Refusal::notText);
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isLineEnd = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!isLineEnd) lines += text[i];
  }
  insertText(lines, {reading.place->offset(), 0});
}

}  // namespace platform
