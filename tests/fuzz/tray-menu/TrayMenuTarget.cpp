#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/StatusMenuExporter.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "fuzz/support/Require.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

using fuzz::require;
using platform::NSMenuItem;

namespace {

struct Method {
  const char* name;
  const char* parameters;
  const char* answer;
};
constexpr std::array methods = {
    Method{"GetLayout", "(iias)", "(u(ia{sv}av))"}, Method{"GetGroupProperties", "(aias)", "(a(ia{sv}))"},
    Method{"GetProperty", "(is)", "(v)"},           Method{"Event", "(isvu)", nullptr},
    Method{"EventGroup", "(a(isvu))", "(ai)"},      Method{"AboutToShow", "(i)", "(b)"},
    Method{"AboutToShowGroup", "(ai)", "(aiai)"}};

/// The parameters as the bus hands them over: of the method's type, in normal form, with any content.
platform::GVariantPtr parametersOf(const Method& method, const std::uint8_t* data, std::size_t size) {
  GBytes* bytes = g_bytes_new(data, size);
  const platform::GVariantPtr raw(
      g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(method.parameters), bytes, FALSE)));
  g_bytes_unref(bytes);
  return platform::GVariantPtr(g_variant_get_normal_form(raw.get()));
}

}  // namespace

/// Whatever a program on the session bus calls: no crash, an answer of the method's type, and only what a
/// user could choose in the menu is done. The bytes are calls: one for the method, one for the length, the
/// parameters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static platform::HeadlessPlatform desktop;
  int opened = 0;
  int closed = 0;
  int done = 0;
  const auto menu = std::make_shared<platform::NSMenu>();
  menu->addItem(std::make_shared<NSMenuItem>("About", [&] { ++done; }));
  menu->addItem(NSMenuItem::separator());
  menu->addItem(std::make_shared<NSMenuItem>(
      "Sticky",
      [&] {
        ++done;
        auto& item = *menu->items()[2];
        item.setState(item.state() == NSMenuItem::State::on ? NSMenuItem::State::off : NSMenuItem::State::on);
      },
      "S"));
  menu->addItem(
      std::make_shared<NSMenuItem>("Off", [] { require(false, "an item that is off does nothing"); }));
  menu->items()[3]->setEnabled(false);
  menu->addItem(std::make_shared<NSMenuItem>("Hidden", [] { require(false, "a hidden item does nothing"); }));
  menu->items()[4]->setHidden(true);
  platform::StatusMenuExporter exporter([&] { ++opened; }, [&] { ++closed; });
  exporter.setMenu(menu);

  while (size >= 2) {
    const auto& method = methods[data[0] % methods.size()];
    const auto length = std::min<std::size_t>(data[1], size - 2);
    const auto parameters = parametersOf(method, data + 2, length);
    data += 2 + length;
    size -= 2 + length;
    std::string error;
    GVariant* value = exporter.respond(method.name, parameters.get(), error);
    require((value == nullptr) == (method.answer == nullptr || !error.empty()),
            "there is an answer or an error");
    if (value != nullptr) {
      const platform::GVariantPtr own(g_variant_ref_sink(value));
      require(std::strcmp(g_variant_get_type_string(value), method.answer) == 0,
              "it is of the method's type");
    }
    desktop.queue.drain();
  }
  require(closed <= opened, "a menu closes only if it was open");
  return 0;
}
