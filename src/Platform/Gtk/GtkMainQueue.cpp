#include "Platform/Gtk/GtkMainQueue.h"

#include <cmath>
#include <mutex>
#include <utility>

#include <glib.h>

namespace platform {

namespace {

using Work = std::function<void()>;

/// Passed through by both sides when work is handed from thread to thread. GLib's own lock orders them
/// already, but the thread sanitizer doesn't see that one.
std::mutex handover;

void passThroughHandover() { const std::lock_guard lock(handover); }

gboolean runOnce(gpointer data) {
  passThroughHandover();
  (*static_cast<Work*>(data))();
  return G_SOURCE_REMOVE;
}

void destroyWork(gpointer data) { std::default_delete<Work>()(static_cast<Work*>(data)); }

guint milliseconds(double seconds) {
  return seconds <= 0 ? 0 : static_cast<guint>(std::llround(seconds * 1000));
}

void attach(GSource* source, Work work) {
  g_source_set_callback(source, runOnce, std::make_unique<Work>(std::move(work)).release(), destroyWork);
  passThroughHandover();
  g_source_attach(source, nullptr);
}

class SourceTimer : public Timer {
 public:
  explicit SourceTimer(GSource* source) : source_(source) {}
  ~SourceTimer() override {
    SourceTimer::invalidate();
    g_source_unref(source_);
  }
  void invalidate() noexcept override { g_source_destroy(source_); }

 private:
  GSource* source_;
};

}  // namespace

void GtkMainQueue::async(Work work) {
  GSource* source = g_idle_source_new();
  // Ahead of drawing, so that what one turn changed is drawn together.
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  attach(source, std::move(work));
  g_source_unref(source);
}

std::unique_ptr<Timer> GtkMainQueue::timer(double seconds, Work work) {
  GSource* source = g_timeout_source_new(milliseconds(seconds));
  attach(source, std::move(work));
  return std::make_unique<SourceTimer>(source);
}

void GtkMainQueue::asyncAfter(double seconds, Work work) {
  GSource* source = g_timeout_source_new(milliseconds(seconds));
  attach(source, std::move(work));
  g_source_unref(source);
}

}  // namespace platform
