#include "Platform/Gtk/GtkPlatform.h"

#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/FileUserDefaults.h"
#include "Platform/Gtk/FreeMemory.h"
#include "Platform/Gtk/GtkAssets.h"
#include "Platform/Gtk/GtkEventTarget.h"
#include "Platform/Gtk/GtkHostingView.h"
#include "Platform/Gtk/GtkImage.h"
#include "Platform/Gtk/GtkInputSource.h"
#include "Platform/Gtk/GtkPanel.h"
#include "Platform/Gtk/GtkTextEditor.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/Gtk/LibraryMessages.h"
#include "Platform/Gtk/PageDownloads.h"
#include "Platform/Gtk/PopoverWindow.h"
#include "Platform/Gtk/PortalHotKeyGrabs.h"
#include "Platform/Gtk/ProgramFolders.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/Gtk/SoupURLSession.h"
#include "Platform/Gtk/StatusNotifierItem.h"
#include "Platform/Gtk/Toolkit.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/Gtk/X11HotKeyGrabs.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSScreen.h"
#include "Platform/TrayClicks.h"
#include "Platform/WholeFile.h"
#include "platform/BundleInfo.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

#include <adwaita.h>
#include <webkit/webkit.h>

namespace platform {

namespace {

std::vector<std::string> libraryVersions() {
  const auto version = [](const char* name, guint major, guint minor, guint micro) {
    std::ostringstream text;
    text << name << ' ' << major << '.' << minor << '.' << micro;
    return text.str();
  };
  return {version("GTK", gtk_get_major_version(), gtk_get_minor_version(), gtk_get_micro_version()),
          version("WebKitGTK", webkit_get_major_version(), webkit_get_minor_version(),
                  webkit_get_micro_version())};
}

/// A panel that starts with the session may come some seconds after the programs that start with it.
constexpr double trayPatience = 4;
/// How long what the program was started for waits for the tray.
constexpr double startPatience = 2;
/// The toolkit waits for the tray's answer at the most this long.
/// Time for a panel that has just come up to paint itself.
constexpr double paintingTime = 2;
constexpr double registrationPatience = 0.3;

constexpr std::size_t longestFatalError = 4096;

std::filesystem::path fatalErrorFile() { return ProgramFolders::userState() / "fatal-error"; }

[[noreturn]] void endWithMessage(const std::string& message) {
  // By the log, which waits for no reader.
  std::istringstream lines("velkin: " + message);
  for (std::string line; std::getline(lines, line);) debugLog(line);
  std::_Exit(1);
}

}  // namespace

GtkPlatform::GtkPlatform()
    : workspace_([this] { return application_.connection(); }),
      services_({[this] { return application_.connection(); }, [this] { startToolkit(); },
                 [this] { return popover_ != nullptr ? popover_->keepOpen() : nullptr; }}),
      dialogs_({[this] { return popover_ != nullptr ? popover_->keepOpen() : nullptr; },
                [] { return (ProgramFolders::userState() / "folders").string(); },
                [this] { startToolkit(); }}),
      notifications_([this] { return application_.connection(); }) {
  keepLittleFreeMemory();
  sendLibraryMessagesToDebugLog();
  bundle_ = {bundle::identifier,   bundle::shortVersion, bundle::buildNumber,
             bundle::creationDate, bundle::name,         libraryVersions()};
  g_set_prgname("velkin");
  g_set_application_name("Velkin");
  application_.willLaunch = [this] {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr) {
      endWithMessage("There is no display. Start Velkin from a graphical session.");
    }
    if (const auto reason = ProgramFolders::makeUserFolders(); !reason.empty()) endWithMessage(reason);
    appearance_.readFromDesktop(application_.connection());
  };
  install(this);
}

GtkPlatform::~GtkPlatform() {
  if (const auto takeBack = std::exchange(takeNoTrayNoticeBack_, {})) takeBack();
  install(nullptr);
}

GtkPlatform& GtkPlatform::shared() { return static_cast<GtkPlatform&>(Platform::current()); }

double GtkPlatform::now() const {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::filesystem::path GtkPlatform::userDataFolder() const { return ProgramFolders::userData(); }

NSUserDefaults& GtkPlatform::standardUserDefaults() {
  if (!defaults_) {
    defaults_ = std::make_unique<FileUserDefaults>(ProgramFolders::userConfig() /
                                                   (std::string(bundle::identifier) + ".plist"));
  }
  return *defaults_;
}

NSURLSession& GtkPlatform::sharedURLSession() {
  if (!urlSession_) urlSession_ = std::make_unique<SoupURLSession>();
  return *urlSession_;
}

std::optional<NSAppearance> GtkPlatform::currentAppearance() const {
  return NSAppearance{appearance_.isDark() ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua};
}

std::vector<NSScreen> GtkPlatform::screens() const {
  if (!isToolkitRunning_) return {};
  return WindowSystem::present().screens();
}

std::optional<NSScreen> GtkPlatform::mainScreen() const {
  auto all = screens();
  if (all.empty()) return std::nullopt;
  return all.front();
}

std::unique_ptr<NSStatusItem> GtkPlatform::makeStatusItem(double length) {
  // Its tray, an extension, keeps the single click for the menu.
  setTrayClicks(isGnomeShell() ? TrayClicks::menu : TrayClicks::action);
  auto item = std::make_unique<StatusNotifierItem>(
      length, application_.connection(),
      StatusNotifierItem::Events{[this] { queue_.async([this] { startToolkit(); }); },
                                 [this] { awaitTray(); }, [this](bool hasTray) { trayChanged(hasTray); }});
  statusItem_ = item.get();
  statusItem_->whenToolkitReady = [this](std::function<void()> work) { whenToolkitReady(std::move(work)); };
  statusItem_->pixelOfClick = [this](NSPoint told) {
    return isToolkitRunning_ ? WindowSystem::present().pixelOfClick(told) : told;
  };
  statusItem_->shouldIgnoreClick = [this] {
    // A user who changes the panel's colours finds the icon's changed by the next click.
    if (isToolkitRunning_) colourIcon();
    return popover_ != nullptr && popover_->wasClosedByThisClick();
  };
  queue_.asyncAfter(registrationPatience, [this] { startToolkit(); });
  startTimer_ = queue_.timer(startPatience, [this] { application_.startHasEnded(); });
  if (application_.connection() == nullptr) awaitTray();
  return item;
}

void GtkPlatform::awaitTray() {
  // From the tray's answer on: a busy machine may take long to give one.
  if (trayTimer_ || hasTray() || hasToldOfNoTray_) return;
  trayTimer_ = queue_.timer(trayPatience, [this] {
    if (!hasTray()) tellThatThereIsNoTray();
  });
}

bool GtkPlatform::hasTray() const { return statusItem_ != nullptr && statusItem_->hasTray(); }

void GtkPlatform::trayChanged(bool hasTray) {
  debugLog("GtkPlatform", "trayChanged(_:)", hasTray ? "The tray shows the icon" : "The tray is gone");
  if (!hasTray) return;
  // What was asked for during the start happens at the icon.
  queue_.async([this] { application_.startHasEnded(); });
  whenToolkitReady([this] { colourIcon(); });
  queue_.asyncAfter(paintingTime, [this] { whenToolkitReady([this] { colourIcon(); }); });
  // A tray that goes once it was there is one that starts anew.
  trayTimer_.reset();
  if (const auto takeBack = std::exchange(takeNoTrayNoticeBack_, {})) takeBack();
}

void GtkPlatform::colourIcon() {
  // Their panels draw symbolic icons as they come. Others colour them.
  const bool drawsAsItComes = isDesktop("MATE") || isDesktop("LXQt") || isCinnamon();
  if (!drawsAsItComes || statusItem_ == nullptr) return;
  statusItem_->setPanelLuminance(WindowSystem::present().panelLuminance());
}

void GtkPlatform::tellThatThereIsNoTray() {
  if (std::exchange(hasToldOfNoTray_, true)) return;
  startToolkit();
  debugLog("GtkPlatform", "tellThatThereIsNoTray()", "This desktop has no system tray");
  takeNoTrayNoticeBack_ = toolkit::ask(
      nullptr,
      NSAlert{"There is no system tray",
              "Velkin runs, but this desktop shows no tray icons. Start Velkin again to open its "
              "window, and once more to close it. The icon appears as soon as there is a tray.",
              {{"Close", NSAlert::Button::Role::cancel}}},
      [this](std::size_t) { takeNoTrayNoticeBack_ = {}; });
}

std::unique_ptr<NSPopover> GtkPlatform::makePopover() {
  auto popover = std::make_unique<PopoverWindow>(
      PopoverWindow::Surroundings{[this] { return hasTray(); },
                                  [this]() -> std::optional<PixelPoint> {
                                    if (statusItem_ == nullptr) return std::nullopt;
                                    const auto click = statusItem_->lastClick();
                                    if (click == NSPoint{}) return std::nullopt;
                                    return PixelPoint{static_cast<int>(click.x), static_cast<int>(click.y)};
                                  },
                                  [this](std::function<void()> work) { whenToolkitReady(std::move(work)); }});
  popover_ = popover.get();
  return popover;
}

std::unique_ptr<NSPanel> GtkPlatform::makePanel(NSRect contentRect, std::uint32_t styleMask) {
  return std::make_unique<GtkPanel>(contentRect, styleMask);
}

std::unique_ptr<WKWebView> GtkPlatform::makeWebView(NSRect frame, WKWebViewConfiguration configuration) {
  return std::make_unique<GtkWebView>(
      frame, std::move(configuration), +[]() -> WebEngine& { return shared().webEngine(); });
}

std::unique_ptr<NSHostingView> GtkPlatform::makeHostingView(View root) {
  startToolkit();
  return std::make_unique<GtkHostingView>(std::move(root));
}

std::unique_ptr<NSTextView> GtkPlatform::makeTextView() {
  startToolkit();
  return std::make_unique<GtkTextEditor>();
}

void GtkPlatform::loadImage(const std::string& path, NSSize size,
                            std::function<void(std::shared_ptr<NSImage>)> completion) {
  startToolkit();
  platform::loadImage(path, size, std::move(completion));
}

std::string GtkPlatform::pathOfImage(const std::string& name) const { return fileOfImage(name).string(); }

EventTarget& GtkPlatform::eventDispatcherTarget() {
  if (!eventTarget_) {
    eventTarget_ = std::make_unique<GtkEventTarget>(
        [this](HotKeyGrabs::OnKey onKey) { return makeHotKeyGrabs(std::move(onKey)); });
  }
  return *eventTarget_;
}

std::unique_ptr<HotKeyGrabs> GtkPlatform::makeHotKeyGrabs(HotKeyGrabs::OnKey onKey) {
  if (!PortalHotKeyGrabs::isNeeded()) return std::make_unique<X11HotKeyGrabs>(std::move(onKey));
  return std::make_unique<PortalHotKeyGrabs>(
      PortalHotKeyGrabs::Surroundings{
          [this] { return application_.connection(); },
          [this](std::function<void()> work) { whenToolkitReady(std::move(work)); }},
      std::move(onKey));
}

std::unique_ptr<TISInputSource> GtkPlatform::copyCurrentASCIICapableKeyboardLayoutInputSource() {
  startToolkit();
  return GtkInputSource::current();
}

void GtkPlatform::startToolkit() {
  if (isToolkitRunning_) return;
  // A window can be put at its icon only by way of X11, so that comes first where a session offers both.
  gdk_set_allowed_backends("x11,wayland,*");
  if (!gtk_init_check())
    endWithMessage("The display can't be opened. Start Velkin from a graphical session.");
  WindowSystem::present().nameProgram(bundle::identifier);
  adw_init();
  isToolkitRunning_ = true;
  appearance_.followToolkit({[this] { notifications_.deliver(interfaceThemeChangedNotification, ""); },
                             [this] { notifications_.deliver(appearanceFirstToldNotification, ""); }});
  for (const auto& work : std::exchange(waitingForToolkit_, {})) work();
}

void GtkPlatform::whenToolkitReady(std::function<void()> work) {
  if (isToolkitRunning_) {
    work();
  } else {
    waitingForToolkit_.push_back(std::move(work));
  }
}

WebEngine& GtkPlatform::webEngine() {
  if (!webEngine_) {
    startToolkit();
    if (std::string reason; !WebEngine::canSandbox(reason)) {
      endWithMessage("Web pages can't be shown, because their sandbox can't start: " + reason +
                     "\nVelkin needs bubblewrap (bwrap) and the right to make user namespaces.");
    }
    webEngine_ = std::make_unique<WebEngine>(+[]() -> PopoverWindow& { return *shared().popover_; });
    webEngine_->admitDownload = [this](WebKitDownload* download, std::function<void()> start) {
      admitDownload(download, *webEngine_, std::move(start));
    };
  }
  return *webEngine_;
}

void GtkPlatform::noteFatalError(std::string_view message) noexcept {
  if (defaults_) defaults_->storeWhatIsHeldBack();
  makePrivateFolder(ProgramFolders::userState());
  replaceFile(fatalErrorFile(), std::string(message) + '\n');
}

std::optional<std::string> GtkPlatform::takeLastFatalError() {
  // Whatever stands there instead of a file of ours, it is neither waited for nor left to the next start.
  const auto contents = readWholeFile(fatalErrorFile(), longestFatalError);
  std::error_code error;
  std::filesystem::remove(fatalErrorFile(), error);
  if (!contents) return std::nullopt;
  return contents->bytes.substr(0, contents->bytes.find('\n'));
}

}  // namespace platform
