#include "Platform/Headless/HeadlessPlatform.h"

#include <utility>

namespace platform {

namespace {

template <class Made, class Seen, class... Arguments>
std::unique_ptr<Made> made(std::vector<Seen*>& seen, Arguments&&... arguments) {
  auto object = std::make_unique<Seen>(std::forward<Arguments>(arguments)...);
  seen.push_back(object.get());
  return object;
}

}  // namespace

HeadlessPlatform::HeadlessPlatform() {
  bundle.bundleIdentifier = "com.tarnvale.Velkin";
  bundle.shortVersionString = "1.0.0";
  bundle.version = "23";
  bundle.libraryVersions = {"Toolkit 4.0", "Web engine 2.0"};
  bundle.creationDate = 1'700'000'000.0;
  bundle.name = "Velkin";
  install(this);
}

HeadlessPlatform::~HeadlessPlatform() { install(nullptr); }

std::optional<NSScreen> HeadlessPlatform::mainScreen() const {
  if (attachedScreens.empty()) return std::nullopt;
  return attachedScreens.front();
}

std::unique_ptr<NSStatusItem> HeadlessPlatform::makeStatusItem(double length) {
  return made<NSStatusItem>(statusItems, length);
}

std::unique_ptr<NSPopover> HeadlessPlatform::makePopover() { return made<NSPopover>(popovers); }

std::unique_ptr<NSPanel> HeadlessPlatform::makePanel(NSRect contentRect, std::uint32_t styleMask) {
  return made<NSPanel>(panels, contentRect, styleMask);
}

std::unique_ptr<WKWebView> HeadlessPlatform::makeWebView(NSRect frame, WKWebViewConfiguration configuration) {
  return made<WKWebView>(webViews, frame, std::move(configuration));
}

std::unique_ptr<NSHostingView> HeadlessPlatform::makeHostingView(View root) {
  return std::make_unique<HeadlessHostingView>(std::move(root));
}

std::unique_ptr<NSTextView> HeadlessPlatform::makeTextView() { return made<NSTextView>(textViews); }

void HeadlessPlatform::loadImage(const std::string& path, NSSize size,
                                 std::function<void(std::shared_ptr<NSImage>)> completion) {
  imagesAskedFor.emplace_back(path, size);
  auto image = brokenImages.contains(path) ? nullptr : std::make_shared<HeadlessImage>(path, size);
  queue.async([completion = std::move(completion), image = std::move(image)] { completion(image); });
}

std::unique_ptr<TISInputSource> HeadlessPlatform::copyCurrentASCIICapableKeyboardLayoutInputSource() {
  if (!keyboardLayout) return nullptr;
  return std::make_unique<HeadlessInputSource>(*keyboardLayout);
}

void HeadlessPlatform::noteFatalError(std::string_view message) noexcept {
  standardUserDefaults().storeWhatIsHeldBack();
  lastFatalError = message;
}

std::optional<std::string> HeadlessPlatform::takeLastFatalError() {
  return std::exchange(lastFatalError, std::nullopt);
}

}  // namespace platform
