#include "Platform/Gtk/GtkLongWords.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <string_view>

namespace platform {

namespace {

constexpr std::size_t longWord = 1000;

bool hasLongWord(std::string_view line) {
  std::size_t word = 0;
  for (const char byte : line) {
    const bool isSpace = byte == ' ' || byte == '\t';
    word = isSpace ? 0 : word + 1;
    if (word > longWord) return true;
  }
  return false;
}

/// How a line wraps is what its first character says.
void setWrapping(GtkTextTag* tag, GtkTextIter line) {
  auto* buffer = gtk_text_iter_get_buffer(&line);
  GtkTextIter end = line;
  if (!gtk_text_iter_ends_line(&end)) gtk_text_iter_forward_to_line_end(&end);
  const GStringPtr text(gtk_text_iter_get_slice(&line, &end));
  const bool isTagged = gtk_text_iter_has_tag(&line, tag) != FALSE;
  if (hasLongWord(text.get())) {
    if (!isTagged) gtk_text_buffer_apply_tag(buffer, tag, &line, &end);
  } else if (isTagged) {
    gtk_text_buffer_remove_tag(buffer, tag, &line, &end);
  }
}

void setWrapping(GtkTextTag* tag, GtkTextIter from, const GtkTextIter& to) {
  gtk_text_iter_set_line_offset(&from, 0);
  do {
    if (gtk_text_iter_get_bytes_in_line(&from) > static_cast<int>(longWord) ||
        gtk_text_iter_has_tag(&from, tag))
      setWrapping(tag, from);
  } while (gtk_text_iter_forward_line(&from) && gtk_text_iter_compare(&from, &to) <= 0);
}

}  // namespace

void wrapLongWords(GtkTextBuffer* buffer) {
  auto* tag = gtk_text_buffer_create_tag(buffer, nullptr, "wrap-mode", GTK_WRAP_CHAR, nullptr);
  g_signal_connect_after(
      buffer, "insert-text",
      G_CALLBACK(+[](GtkTextBuffer*, GtkTextIter* end, const char* text, int length, gpointer data) {
        GtkTextIter start = *end;
        const auto bytes =
            length < 0 ? std::string_view(text) : std::string_view(text, static_cast<std::size_t>(length));
        gtk_text_iter_backward_chars(
            &start, static_cast<int>(g_utf8_strlen(bytes.data(), static_cast<gssize>(bytes.size()))));
        setWrapping(static_cast<GtkTextTag*>(data), start, *end);
      }),
      tag);
  g_signal_connect_after(buffer, "delete-range",
                         G_CALLBACK(+[](GtkTextBuffer*, GtkTextIter* start, GtkTextIter*, gpointer data) {
                           setWrapping(static_cast<GtkTextTag*>(data), *start, *start);
                         }),
                         tag);
}

}  // namespace platform
