#include "Platform/Gtk/SwayDesktop.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/SwayRequest.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include <unistd.h>

namespace platform {

namespace {

/// A window comes onto the screen a moment after the toolkit has asked for it.
constexpr double betweenTries = 0.02;
constexpr int mostTries = 50;

std::string displaySocket() {
  const char* name = std::getenv("WAYLAND_DISPLAY");
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  return (std::filesystem::path(folder != nullptr ? folder : "") / (name != nullptr ? name : "wayland-0"))
      .string();
}

}  // namespace

/// One window's way to its place.
struct SwayDesktop::Run {
  std::string criteria;
  std::string title;
  WindowSystem::Placing placing;
  int tries = 0;

  ~Run() {
    if (placing.done) placing.done();
  }
};

SwayDesktop* SwayDesktop::present() {
  static const auto desktop = []() -> std::unique_ptr<SwayDesktop> {
    const char* socket = std::getenv("SWAYSOCK");
    if (socket == nullptr || !isCompositorsOwn(socket, displaySocket())) return nullptr;
    return std::make_unique<SwayDesktop>(socket);
  }();
  return desktop.get();
}

void SwayDesktop::ask(std::vector<SwayMessage> messages, std::function<void(const Answers&)> whenAnswered,
                      std::function<void()> whenNot) {
  askSway(socket_, std::move(messages),
          [this, alive = isAlive_.watch(), whenAnswered = std::move(whenAnswered),
           whenNot = std::move(whenNot)](const std::optional<Answers>& answers) {
            if (!alive) return;
            if (answers) return whenAnswered(*answers);
            tellOfFailure();
            if (whenNot) whenNot();
          });
}

void SwayDesktop::tellOfFailure() {
  layout_.reset();
  if (std::exchange(hasToldOfFailure_, true)) return;
  debugLog("SwayDesktop", "tellOfFailure()", "sway doesn't answer; the popover stands where sway puts it");
}

bool SwayDesktop::readLayout(const Answers& answers) {
  layout_ = SwayLayout::read(answers[0], answers[1]);
  if (!layout_) tellOfFailure();
  return layout_.has_value();
}

void SwayDesktop::refresh() {
  ask({{SwayMessage::Type::getOutputs, {}}, {SwayMessage::Type::getWorkspaces, {}}},
      [this](const Answers& answers) { readLayout(answers); }, {});
}

std::optional<PixelPoint> SwayDesktop::icon(std::optional<PixelPoint> told) const {
  if (told && layout_ && layout_->canBeIcon(*told)) return told;
  return iconByPointer_;
}

void SwayDesktop::place(std::string criteria, std::string title, WindowSystem::Placing placing) {
  const auto run = std::make_shared<Run>();
  run->criteria = std::move(criteria);
  run->title = std::move(title);
  run->placing = std::move(placing);
  begin(run);
}

void SwayDesktop::begin(const std::shared_ptr<Run>& run) {
  ask({{SwayMessage::Type::getOutputs, {}}, {SwayMessage::Type::getWorkspaces, {}}},
      [this, run](const Answers& answers) {
        if (!readLayout(answers)) return;
        const auto& click = run->placing.clickToldAs;
        // What the tray says is better than the pointer, which a finger doesn't move.
        if (click && !layout_->canBeIcon(*click)) {
          askForPointer(run);
        } else {
          move(run);
        }
      },
      {});
}

void SwayDesktop::askForPointer(const std::shared_ptr<Run>& run) {
  ask({{SwayMessage::Type::runCommand, run->criteria + " border none, move position pointer"},
       {SwayMessage::Type::getTree, {}}},
      [this, run](const Answers& answers) {
        if (outcomeOf(answers[0]) == SwayOutcome::noSuchWindow)
          return again(run, &SwayDesktop::askForPointer);
        const auto window = windowInTree(answers[1], getpid(), run->title);
        if (window && layout_) iconByPointer_ = layout_->iconBelow(*window);
        move(run);
      },
      {});
}

void SwayDesktop::move(const std::shared_ptr<Run>& run) {
  const auto place = run->placing.wanted();
  if (!place) return;
  const auto command = run->criteria + " border none, move absolute position " + std::to_string(place->x) +
                       " px " + std::to_string(place->y) + " px";
  ask({{SwayMessage::Type::runCommand, command}},
      [this, run](const Answers& answers) {
        if (outcomeOf(answers[0]) == SwayOutcome::noSuchWindow) again(run, &SwayDesktop::move);
      },
      {});
}

void SwayDesktop::again(const std::shared_ptr<Run>& run,
                        void (SwayDesktop::*step)(const std::shared_ptr<Run>&)) {
  if (++run->tries > mostTries) {
    if (run->placing.missing) run->placing.missing();
    return;
  }
  DispatchQueue::main().asyncAfter(betweenTries, [this, alive = isAlive_.watch(), run, step] {
    if (alive) (this->*step)(run);
  });
}

}  // namespace platform
