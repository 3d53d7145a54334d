#include "Platform/Gtk/GtkTextEdits.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/UTF8.h"

#include <algorithm>

namespace platform {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::size_t characters(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isContinuation));
}

/// Within a user action: makes it a step that what is typed before and after never joins. The toolkit takes
/// insertions that follow one another for one, but no group of several changes.
void keepApart(GtkTextBuffer* buffer, GtkTextIter& at) {
  gtk_text_buffer_insert(buffer, &at, " ", 1);
  GtkTextIter before = at;
  gtk_text_iter_backward_char(&before);
  gtk_text_buffer_delete(buffer, &before, &at);
}

}  // namespace

std::string textOf(GtkTextBuffer* buffer) {
  GtkTextIter start;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &start, &end);
  const GStringPtr text(gtk_text_buffer_get_text(buffer, &start, &end, TRUE));
  return text.get();
}

void replaceText(GtkTextBuffer* buffer, NSRange range, std::string_view text) {
  const auto length = static_cast<std::size_t>(gtk_text_buffer_get_char_count(buffer));
  const auto from = std::min(range.location, length);
  const auto to = from + std::min(range.length, length - from);
  GtkTextIter start;
  GtkTextIter end;
  gtk_text_buffer_get_iter_at_offset(buffer, &start, static_cast<int>(from));
  gtk_text_buffer_get_iter_at_offset(buffer, &end, static_cast<int>(to));
  gtk_text_buffer_begin_user_action(buffer);
  gtk_text_buffer_delete(buffer, &start, &end);
  keepApart(buffer, start);
  gtk_text_buffer_insert(buffer, &start, text.data(), static_cast<int>(text.size()));
  gtk_text_buffer_place_cursor(buffer, &start);
  gtk_text_buffer_end_user_action(buffer);
}

bool changeText(GtkTextBuffer* buffer, const std::string& wanted) {
  const std::string text = wellFormed(wanted);
  const std::string before = textOf(buffer);
  if (text == before) return false;
  const auto shorter = std::min(text.size(), before.size());
  std::size_t same = static_cast<std::size_t>(
      std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(shorter), before.begin()).first -
      text.begin());
  while (same > 0 && ((same < text.size() && isContinuation(text[same])) ||
                      (same < before.size() && isContinuation(before[same])))) {
    --same;
  }
  std::size_t tail = 0;
  while (tail < shorter - same && text[text.size() - tail - 1] == before[before.size() - tail - 1]) ++tail;
  while (tail > 0 && isContinuation(text[text.size() - tail])) --tail;

  GtkTextIter start;
  GtkTextIter end;
  const std::string_view view = before;
  const auto from = characters(view.substr(0, same));
  const auto gone = characters(view.substr(same, before.size() - tail - same));
  gtk_text_buffer_get_iter_at_offset(buffer, &start, static_cast<int>(from));
  gtk_text_buffer_get_iter_at_offset(buffer, &end, static_cast<int>(from + gone));
  gtk_text_buffer_begin_user_action(buffer);
  gtk_text_buffer_delete(buffer, &start, &end);
  keepApart(buffer, start);
  gtk_text_buffer_insert(buffer, &start, text.data() + same, static_cast<int>(text.size() - tail - same));
  gtk_text_buffer_end_user_action(buffer);
  return true;
}

}  // namespace platform
