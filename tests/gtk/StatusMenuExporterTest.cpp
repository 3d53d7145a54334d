#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/StatusMenuExporter.h"
#include "gtk/GtkFixture.h"

#include <memory>
#include <string>

namespace platform {
namespace {

class StatusMenuExporterTest : public GtkFixture {
 protected:
  StatusMenuExporterTest() {
    add("Plain");
    add("Checked")->setState(NSMenuItem::State::off);
    exporter.setMenu(menu);
  }
  std::shared_ptr<NSMenuItem> add(const std::string& title) {
    auto item = std::make_shared<NSMenuItem>(title, [this] {
      ++chosen;
      wasOpenAtChoice = closed == 0;
    });
    menu->addItem(item);
    return item;
  }
  std::string property(int id, const char* name) {
    std::string error;
    GVariant* answer = exporter.respond("GetProperty", sunk(g_variant_new("(is)", id, name)), error);
    if (answer == nullptr) return "none";
    const GVariantPtr held(g_variant_ref_sink(answer));
    const GStringPtr text(g_variant_print(held.get(), FALSE));
    return text.get();
  }
  void event(int id, const char* name) {
    std::string error;
    exporter.respond("Event", sunk(g_variant_new("(isvu)", id, name, g_variant_new_int32(0), 0U)), error);
  }
  void open() {
    std::string error;
    const GVariantPtr answer(
        g_variant_ref_sink(exporter.respond("AboutToShow", sunk(g_variant_new("(i)", 0)), error)));
  }
  GVariant* sunk(GVariant* value) {
    parameters.reset(g_variant_ref_sink(value));
    return parameters.get();
  }

  int closed = 0;
  int chosen = 0;
  bool wasOpenAtChoice = false;
  GVariantPtr parameters;
  std::shared_ptr<NSMenu> menu = std::make_shared<NSMenu>();
  StatusMenuExporter exporter{[] {}, [this] { ++closed; }};
};

TEST_F(StatusMenuExporterTest, WhatCanBeCheckedSaysSoWhileItIsOffToo) {
  EXPECT_EQ(property(2, "toggle-type"), "(<'checkmark'>,)");
  EXPECT_EQ(property(2, "toggle-state"), "(<0>,)");
  menu->items()[1]->setState(NSMenuItem::State::on);
  EXPECT_EQ(property(2, "toggle-type"), "(<'checkmark'>,)");
  EXPECT_EQ(property(2, "toggle-state"), "(<1>,)");
  EXPECT_EQ(property(1, "toggle-type"), "none");
}

TEST_F(StatusMenuExporterTest, WhatIsChosenMayTakeTheKeyboard) {
  bool isByClick = false;
  menu->addItem(std::make_shared<NSMenuItem>(
      "Opens", [&] { isByClick = presentActivation() != nullptr && presentActivation()->isClick; }));
  event(3, "clicked");
  EXPECT_TRUE(wait([&] { return isByClick; }));
  EXPECT_EQ(presentActivation(), nullptr);
}

TEST_F(StatusMenuExporterTest, AClosingWaitsForTheClickOfItsGesture) {
  open();
  event(0, "closed");
  event(1, "clicked");
  ASSERT_TRUE(wait([&] { return chosen == 1; }));
  EXPECT_TRUE(wasOpenAtChoice);
  EXPECT_EQ(closed, 1) << "behind what was chosen, and once";
}

TEST_F(StatusMenuExporterTest, WithoutAClickItIsAClosing) {
  open();
  event(0, "closed");
  EXPECT_EQ(closed, 0);
  ASSERT_TRUE(wait([&] { return closed == 1; }));
  event(0, "closed");
  turn();
  EXPECT_EQ(closed, 1);
}

TEST_F(StatusMenuExporterTest, AMenuThatOpensAgainWasClosedBefore) {
  open();
  event(0, "closed");
  open();
  EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace platform
