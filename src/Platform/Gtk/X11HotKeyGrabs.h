#pragma once

#include "Platform/Alive.h"
#include "Platform/Gtk/HotKeyGrabs.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <glib.h>
#include <xcb/xcb.h>

namespace platform {

/// Keys grabbed on the root window, by an X connection of their own in the main loop, which is opened with
/// the first of them. A key is its position: a change of layout moves none. Main thread.
class X11HotKeyGrabs : public HotKeyGrabs {
 public:
  explicit X11HotKeyGrabs(OnKey onKey);
  ~X11HotKeyGrabs() override;
  X11HotKeyGrabs(const X11HotKeyGrabs&) = delete;
  X11HotKeyGrabs& operator=(const X11HotKeyGrabs&) = delete;

  OSStatus grab(HotKeyCombination combination) override;
  void ungrab(HotKeyCombination combination) override;
  bool isHeldByAnother(HotKeyCombination combination) override;

 private:
  struct FreeDeleter {
    void operator()(void* memory) const noexcept;
  };
  template <class T>
  using Reply = std::unique_ptr<T, FreeDeleter>;
  using Event = Reply<xcb_generic_event_t>;

  /// Which modifier of the core protocol is which key, as the keyboard is set up at the moment.
  struct Modifiers {
    std::uint16_t alt = XCB_MOD_MASK_1;
    std::uint16_t super = XCB_MOD_MASK_4;
    /// 0 on a keyboard without it.
    std::uint16_t numLock = 0;
    bool operator==(const Modifiers&) const = default;
  };
  /// A combination as the server knows it.
  struct ServerKey {
    xcb_keycode_t keycode;
    std::uint16_t modifiers;
    bool operator==(const ServerKey&) const = default;
  };

  bool connect();
  void disconnect();
  void readKeyboard();
  std::vector<std::uint16_t> lockCombinations() const;
  std::optional<ServerKey> serverKey(HotKeyCombination combination) const;
  bool grabOnServer(ServerKey key);
  void ungrabOnServer(ServerKey key);
  std::string spoken(HotKeyCombination combination) const;

  Event takeEvent();
  bool isRepetition(const xcb_key_release_event_t& release);
  void drain();
  void drainLater();
  void keyPressed(const xcb_key_press_event_t& press);
  void keyReleased(const xcb_key_release_event_t& release);
  void keyboardChanged();

  OnKey onKey_;
  Alive isAlive_;
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_NONE;
  guint source_ = 0;
  bool hasFailed_ = false;
  Modifiers modifiers_;
  /// The keys' first symbols, for the log.
  std::vector<xcb_keysym_t> symbols_;
  xcb_keycode_t firstKeycode_ = 0;
  /// Those asked for, and whether the server gave them.
  std::map<HotKeyCombination, bool> grabs_;
  /// What is held down at the moment, by keycode: the modifiers may be released first.
  std::map<xcb_keycode_t, HotKeyCombination> down_;
  std::deque<Event> waiting_;
};

}  // namespace platform
