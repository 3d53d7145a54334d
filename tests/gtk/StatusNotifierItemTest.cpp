#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/StatusNotifierItem.h"
#include "Platform/NSEvent.h"
#include "gtk/GtkFixture.h"

#include <memory>
#include <optional>
#include <string>

#include <unistd.h>

namespace platform {
namespace {

/// The icon on the session's bus, called as a panel calls it.
class StatusNotifierItemTest : public GtkFixture {
 protected:
  StatusNotifierItemTest() {
    item.button()->sendActionOn = NSEvent::mask(NSEvent::EventType::leftMouseUp);
    item.button()->action = [this] {
      ++clicks;
      seen.reset();
      if (presentActivation() != nullptr) seen = *presentActivation();
    };
  }
  ~StatusNotifierItemTest() override { turn(); }

  /// Returns when it was answered.
  void call(const char* method, GVariant* parameters) {
    bool isAnswered = false;
    const auto name = "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1";
    g_dbus_connection_call(
        bus.get(), name.c_str(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", method, parameters,
        nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        [](GObject* source, GAsyncResult* result, gpointer answered) {
          const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
          EXPECT_TRUE(reply);
          *static_cast<bool*>(answered) = true;
        },
        &isAnswered);
    ASSERT_TRUE(wait([&] { return isAnswered; }));
  }
  void click() {
    const int before = clicks;
    call("Activate", g_variant_new("(ii)", 10, 10));
    ASSERT_TRUE(wait([&] { return clicks > before; }));
  }

  int clicks = 0;
  /// What gave the last click's windows the right to the keyboard.
  std::optional<Activation> seen;
  GObjectPtr<GDBusConnection> bus =
      GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  StatusNotifierItem item{28, bus.get(), {}};
};

TEST_F(StatusNotifierItemTest, AClicksWindowsMayTakeTheKeyboard) {
  click();
  ASSERT_TRUE(seen);
  EXPECT_TRUE(seen->isClick);
  EXPECT_EQ(seen->token, "");
  EXPECT_EQ(presentActivation(), nullptr);
}

TEST_F(StatusNotifierItemTest, ThePanelsTokenIsForTheNextClickAlone) {
  call("ProvideXdgActivationToken", g_variant_new("(s)", "token-1"));
  click();
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen->token, "token-1");
  click();
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen->token, "");
}

TEST_F(StatusNotifierItemTest, ATokenThatNoWindowCanHaveIsNone) {
  call("ProvideXdgActivationToken", g_variant_new("(s)", std::string(1025, 'x').c_str()));
  click();
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen->token, "");
}

}  // namespace
}  // namespace platform
