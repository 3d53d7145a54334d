#include "Platform/Gtk/GtkPasteboard.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/UTF8.h"

#include <array>
#include <deque>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr gsize pieceSize = 65536;
/// In the order of our liking. The last ones are what old programs offer.
constexpr std::array textTypes = {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "STRING",
                                  static_cast<const char*>(nullptr)};

GdkClipboard* clipboard() {
  auto* display = gdk_display_get_default();
  return display != nullptr ? gdk_display_get_clipboard(display) : nullptr;
}

bool isEmpty(GdkClipboard* board) {
  auto* formats = gdk_clipboard_get_formats(board);
  gsize types = 0;
  gsize mimeTypes = 0;
  gdk_content_formats_get_gtypes(formats, &types);
  gdk_content_formats_get_mime_types(formats, &mimeTypes);
  return types == 0 && mimeTypes == 0;
}

bool hasText(GdkClipboard* board) {
  auto* formats = gdk_clipboard_get_formats(board);
  if (gdk_content_formats_contain_gtype(formats, G_TYPE_STRING)) return true;
  for (const char* type : textTypes) {
    if (type != nullptr && gdk_content_formats_contain_mime_type(formats, type)) return true;
  }
  return false;
}

/// What we, or a page of ours, put there is at hand.
std::optional<std::string> ownText(GdkClipboard* board) {
  auto* content = gdk_clipboard_get_content(board);
  if (content == nullptr) return std::nullopt;
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_STRING);
  std::optional<std::string> text;
  if (gdk_content_provider_get_value(content, &value, nullptr) && g_value_get_string(&value) != nullptr) {
    text = wellFormed(g_value_get_string(&value));
  }
  g_value_unset(&value);
  return text;
}

NSPasteboardReading oneItem(std::optional<std::string> text) {
  if (text && text->size() > NSPasteboard::maximumBytes)
    return {.items = {}, .failure = NSPasteboardReading::Failure::tooLong};
  return {.items = {{std::move(text)}}, .failure = std::nullopt};
}

}  // namespace

/// Whoever asked, in order. Shared with what the toolkit still has to answer.
struct GtkPasteboard::Queue {
  std::deque<std::shared_ptr<Reading>> readings;

  void deliver();
};

struct GtkPasteboard::Reading : std::enable_shared_from_this<Reading> {
  Completion completion;
  std::weak_ptr<Queue> queue;
  GObjectPtr<GdkClipboard> board;
  GObjectPtr<GCancellable> cancellable = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  GObjectPtr<GInputStream> stream;
  std::unique_ptr<Timer> timer;
  gulong changed = 0;
  std::string bytes;
  std::optional<NSPasteboardReading> result;

  ~Reading() { stopWaiting(); }

  void stopWaiting() {
    if (changed != 0) g_signal_handler_disconnect(board.get(), std::exchange(changed, 0));
  }

  void finish(NSPasteboardReading reading) {
    if (result) return;
    result = std::move(reading);
    stopWaiting();
    timer.reset();
    g_cancellable_cancel(cancellable.get());
    if (const auto present = queue.lock()) present->deliver();
  }

  void fail(NSPasteboardReading::Failure failure) { finish({.items = {}, .failure = failure}); }

  void fetch() {
    if (isEmpty(board.get())) return finish({});
    if (!hasText(board.get())) return finish(oneItem(std::nullopt));
    auto types = textTypes;
    gdk_clipboard_read_async(
        board.get(), types.data(), G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject* source, GAsyncResult* answer, gpointer data) {
          const std::unique_ptr<std::shared_ptr<Reading>> self(static_cast<std::shared_ptr<Reading>*>(data));
          auto opened = GObjectPtr<GInputStream>::adopt(
              gdk_clipboard_read_finish(GDK_CLIPBOARD(source), answer, nullptr, nullptr));
          if (!opened) return (*self)->fail(NSPasteboardReading::Failure::unreadable);
          (*self)->stream = std::move(opened);
          (*self)->readOn();
        },
        std::make_unique<std::shared_ptr<Reading>>(shared_from_this()).release());
  }

  void readOn() {
    g_input_stream_read_bytes_async(
        stream.get(), pieceSize, G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject* source, GAsyncResult* answer, gpointer data) {
          const std::unique_ptr<std::shared_ptr<Reading>> self(static_cast<std::shared_ptr<Reading>*>(data));
          GBytes* piece = g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), answer, nullptr);
          (*self)->take(piece);
          if (piece != nullptr) g_bytes_unref(piece);
        },
        std::make_unique<std::shared_ptr<Reading>>(shared_from_this()).release());
  }

  void take(GBytes* piece) {
    if (result) return;
    if (piece == nullptr) return fail(NSPasteboardReading::Failure::unreadable);
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(piece, &size));
    if (size == 0) {
      // Some programs count the end of a C string in.
      if (!bytes.empty() && bytes.back() == '\0') bytes.pop_back();
      return finish(oneItem(wellFormed(bytes)));
    }
    bytes.append(data, size);
    if (bytes.size() > maximumBytes) return fail(NSPasteboardReading::Failure::tooLong);
    readOn();
  }

  void waitForItsKinds() {
    changed = g_signal_connect(board.get(), "changed", G_CALLBACK(+[](GdkClipboard* source, gpointer data) {
                                 auto* self = static_cast<Reading*>(data);
                                 // What was asked for is gone; what came instead wasn't asked for.
                                 if (gdk_clipboard_is_local(source))
                                   return self->fail(NSPasteboardReading::Failure::noAnswer);
                                 if (isEmpty(source)) return;
                                 self->stopWaiting();
                                 self->fetch();
                               }),
                               this);
  }
};

void GtkPasteboard::Queue::deliver() {
  while (!readings.empty() && readings.front()->result) {
    const auto reading = std::move(readings.front());
    readings.pop_front();
    DispatchQueue::main().async([reading] {
      if (reading->completion) reading->completion(*reading->result);
    });
  }
}

GtkPasteboard::GtkPasteboard() : queue_(std::make_shared<Queue>()) {}

GtkPasteboard::~GtkPasteboard() {
  for (const auto& reading : queue_->readings) g_cancellable_cancel(reading->cancellable.get());
}

void GtkPasteboard::clearContents() {
  // Given up and taken again at once, the clipboard would be nobody's: the news of the first overtakes the
  // second. So it is kept, with nothing in it.
  auto* board = clipboard();
  if (board == nullptr) return;
  gdk_clipboard_set_text(board, "");
  nothing_ = GObjectPtr<GdkContentProvider>::retain(gdk_clipboard_get_content(board));
}

bool GtkPasteboard::setString(const std::string& text, std::string_view type) {
  auto* board = clipboard();
  if (board == nullptr || type != NSPasteboardTypeString) return false;
  gdk_clipboard_set_text(board, withoutNulCharacters(text).c_str());
  return true;
}

void GtkPasteboard::readItems(Completion completion) {
  auto* board = clipboard();
  auto reading = std::make_shared<Reading>();
  reading->completion = std::move(completion);
  reading->queue = queue_;
  queue_->readings.push_back(reading);
  if (board == nullptr) return reading->finish({});
  reading->board = GObjectPtr<GdkClipboard>::retain(board);
  if (nothing_ && gdk_clipboard_get_content(board) == nothing_.get()) return reading->finish({});
  if (auto text = ownText(board)) return reading->finish(oneItem(std::move(text)));
  reading->timer = DispatchQueue::main().timer(patience, [weak = std::weak_ptr(reading)] {
    const auto late = weak.lock();
    if (late == nullptr) return;
    WindowSystem::present().endClipboardRequests(late->board.get());
    late->fail(NSPasteboardReading::Failure::noAnswer);
  });
  if (isEmpty(board) && WindowSystem::present().isClipboardUntold(board)) {
    reading->waitForItsKinds();
  } else {
    reading->fetch();
  }
}

}  // namespace platform
