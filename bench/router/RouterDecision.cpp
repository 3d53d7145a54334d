#include "RouterDecision.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/QKKeyboardShortcutHelper.h"
#include "Keyboard/VirtualKeyCode.h"
#include "Platform/DebugLog.h"
#include "Platform/FileUserDefaults.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <benchmark/benchmark.h>

namespace {

using namespace velkin;
using platform::NSApp;
using platform::NSEvent;

/// Takes every command and does nothing.
class Nobody : public QKKeyboardShortcutHelperDelegate, public MenuHelperDelegate {
 public:
  bool isSearchBarOpen() const override { return false; }
  void setIsSearchBarOpen(bool) override {}
  void switchWebViewsClicked(int) override {}
  void handlePopOverBehaviorUpdate(std::optional<bool>) override {}
  void handlePrintAction() override {}
  void handleScreenCaptureAction() override {}
  void handleWindowFindOnPage() override {}
  void handleWindowBardOnPage() override {}
  void handleWindowBitBucketOnPage() override {}
  void handleWindowChatOnPage() override {}
  void handleWindowGitLabOnPage() override {}
  void handleWindowHemingwayOnPage() override {}
  void handleWindowJiraOnPage() override {}
  void handleWindowMarkdownOnPage() override {}
  void handleZoomActual() override {}
  void handleZoomIn() override {}
  void handleZoomOut() override {}
  void handleSideGroupClick(int) override {}
  void handleForward() override {}
  void handleBack() override {}
  void handleReloadFromOrigin() override {}
  void handleWindowFullScreen() override {}
  void handleWindowTaller() override {}
  void handleWindowShorter() override {}
  void handleWindowWider() override {}
  void handleWindowSlimmer() override {}
  void handlePageUp() override {}
  void handlePageDown() override {}
  void handleEnter() override {}
  void handleEsc() override {}
  void aboutClicked() override {}
  void homeClicked() override {}
  void shortcutsClicked() override {}
  void appearanceClicked() override {}
  void preferencesClicked() override {}
  void previewClicked() override {}
  void toolbarClicked() override {}
  void stickyClicked() override {}
  void experimentalClicked() override {}
  void reloadClicked() override {}
  void openClicked() override {}
  void quitClicked() override {}
};

/// Settings as the real program has them: in a file.
class Desktop : public platform::HeadlessPlatform {
 public:
  Desktop() : folder_(makeFolder()), file_(folder_ / "settings.plist") {}
  ~Desktop() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  platform::NSUserDefaults& standardUserDefaults() override { return file_; }

 private:
  static std::filesystem::path makeFolder() {
    std::string pattern = "/tmp/velkin-router-XXXXXX";
    return ::mkdtemp(pattern.data());
  }
  std::filesystem::path folder_;
  platform::FileUserDefaults file_;
};

NSEvent keyEvent(NSEvent::EventType type, std::uint16_t code, std::uint32_t modifiers,
                 const char* characters) {
  NSEvent event{.type = type};
  event.keyCode = code;
  event.modifierFlags = modifiers;
  event.charactersIgnoringModifiers = characters;
  return event;
}

/// Again and again without a release, as a key that is held: every repeat takes the same road. Stopping the
/// clock for the releases would cost more than the decision.
void press(benchmark::State& state, std::uint16_t code, std::uint32_t modifiers, const char* characters) {
  const auto down = keyEvent(NSEvent::EventType::keyDown, code, modifiers, characters);
  NSApp().filterByMonitors(keyEvent(NSEvent::EventType::flagsChanged, key::command, modifiers, ""));
  for (auto _ : state) benchmark::DoNotOptimize(NSApp().filterByMonitors(down));
}

void reference(benchmark::State& state) {
  Desktop desktop;
  NSEvent::addLocalMonitorForEvents(NSEvent::mask(NSEvent::EventType::keyDown),
                                    [](const NSEvent& event) -> std::optional<NSEvent> { return event; });
  press(state, key::j, NSEvent::commandFlag, "j");
}

void router(benchmark::State& state, std::uint16_t code, std::uint32_t modifiers, const char* characters) {
  Desktop desktop;
  platform::setDebugLogSink([](std::string_view) {});
  UserDefaultsHelper().set(true, UserDefault::hemingwayEnabled);
  Nobody nobody;
  platform::HeadlessPopover popover;
  platform::HeadlessStatusItem item{28};
  const QKKeyboardShortcutHelper helper(nobody, popover, item, nobody);
  press(state, code, modifiers, characters);
}

}  // namespace

namespace bench {

void registerRouterDecision(int repetitions) {
  constexpr auto command = NSEvent::commandFlag;
  constexpr auto both = NSEvent::commandFlag | NSEvent::controlFlag;
  const auto add = [repetitions](const char* name, auto&&... row) {
    auto* benchmark = benchmark::RegisterBenchmark(name, row...);
    if (repetitions > 0) benchmark->Repetitions(repetitions);
  };
  add(routerReference, reference);
  add("first row: quit", router, velkin::key::q, command, "q");
  add("a view: chat", router, velkin::key::t, command, "t");
  add("a sidebar: Markdown", router, velkin::key::m, both, "m");
  add("size: right", router, velkin::key::right, both, "");
  add("last row: preferences", router, velkin::key::comma, command, ",");
  add("no row: a letter", router, velkin::key::a, std::uint32_t{0}, "a");
}

}  // namespace bench
