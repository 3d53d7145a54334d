#include "Platform/Gtk/X11Clipboard.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <memory>
#include <vector>

#include <gdk/x11/gdkx.h>

// What the toolkit has for X only is deprecated in its newest versions, with nothing in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace platform {

namespace {

constexpr int mostRounds = 20;
constexpr double betweenRounds = 0.025;

Atom atom(GdkDisplay* display, const char* name) {
  return gdk_x11_get_xatom_by_name_for_display(display, name);
}

/// What an owner would say that has nothing of the kind, to all who wait.
void refuse(GdkClipboard* board) {
  auto* display = gdk_clipboard_get_display(board);
  // As texts are asked for, whatever the owner has told.
  std::vector<const char*> targets = {
      "UTF8_STRING", "COMPOUND_TEXT", "TEXT", "STRING", "text/plain;charset=utf-8", "text/plain"};
  gsize count = 0;
  const char* const* kinds = gdk_content_formats_get_mime_types(gdk_clipboard_get_formats(board), &count);
  if (kinds != nullptr) targets.insert(targets.end(), kinds, kinds + count);
  XEvent refusal = {};
  auto& told = refusal.xselection;
  told.type = SelectionNotify;
  told.display = gdk_x11_display_get_xdisplay(display);
  told.requestor = gdk_x11_surface_get_xid(gdk_x11_display_get_default_group(display));
  told.selection = atom(display, "CLIPBOARD");
  told.property = None;
  for (const char* target : targets) {
    told.target = atom(display, target);
    // Not by way of the X server: there it could meet the first request to the next owner.
    gboolean isTaken = FALSE;
    do g_signal_emit_by_name(display, "xevent", &refusal, &isTaken);
    while (isTaken);
  }
}

/// Refuses for a while, until the clipboard's content is another.
struct Refusals {
  explicit Refusals(GdkClipboard* of)
      : board(GObjectPtr<GdkClipboard>::retain(of)),
        changed(g_signal_connect(of, "changed", G_CALLBACK(+[](GdkClipboard*, gpointer self) {
                                   static_cast<Refusals*>(self)->rounds = 0;
                                 }),
                                 this)) {}
  ~Refusals() { g_signal_handler_disconnect(board.get(), changed); }
  Refusals(const Refusals&) = delete;
  Refusals& operator=(const Refusals&) = delete;

  GObjectPtr<GdkClipboard> board;
  int rounds = mostRounds;
  gulong changed;
};

void goOn(const std::shared_ptr<Refusals>& refusals) {
  if (refusals->rounds-- <= 0) return;
  refuse(refusals->board.get());
  DispatchQueue::main().asyncAfter(betweenRounds, [refusals] { goOn(refusals); });
}

}  // namespace

bool X11Clipboard::isUntold(GdkClipboard* board) {
  // What a clipboard holds is known some time after whose it is: the owner is asked.
  auto* display = gdk_clipboard_get_display(board);
  return XGetSelectionOwner(gdk_x11_display_get_xdisplay(display), atom(display, "CLIPBOARD")) != None;
}

void X11Clipboard::endRequests(GdkClipboard* board) { goOn(std::make_shared<Refusals>(board)); }

}  // namespace platform

G_GNUC_END_IGNORE_DEPRECATIONS
