#include "Keyboard/Recorder.h"

#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Keyboard/ShortcutLegend.h"
#include "Platform/CarbonEvents.h"

#include <utility>

namespace velkin::KeyboardShortcuts {

using namespace platform;

namespace {

constexpr double titleWidth = 84;
constexpr double cancelSize = 14;

/// What the field says, for who can't see it.
std::string spoken(const Recorder& recorder, const RecorderCocoa& control) {
  const auto& text = control.stringValue();
  const auto shown = text.empty() || control.isRecording() ? std::string(control.placeholderString())
                                                           : spelledOut(text) + ", change";
  return recorder.title.empty() ? shown : recorder.title + " " + shown;
}

}  // namespace

Recorder::Recorder(std::string label, const Name& shortcutName, RecorderCocoa::OnChange onChange)
    : title(std::move(label)),
      name(shortcutName),
      control(std::make_shared<RecorderCocoa>(shortcutName, std::move(onChange))) {
  control.get()->didChange = [changes = changes] { changes.set(changes.get() + 1); };
  control.get()->wantsKeyboard = [hasKeyboard = hasKeyboard] { hasKeyboard.set(true); };
}

View Recorder::field() const {
  const auto recorder = control.get();
  const bool isRecording = recorder->isRecording();
  const bool isEmpty = recorder->stringValue().empty() || isRecording;
  const auto text =
      Text(isEmpty ? std::string(recorder->placeholderString()) : recorder->stringValue())
          .foregroundColor(isRecording ? Color::Role::accent
                                       : (isEmpty ? Color::Role::secondary : Color::Role::primary));
  const std::weak_ptr weak = recorder;
  const auto keyboard = Binding<bool>([hasKeyboard = hasKeyboard] { return hasKeyboard.get(); },
                                      [hasKeyboard = hasKeyboard, weak](bool has) {
                                        hasKeyboard.set(has);
                                        const auto field = weak.lock();
                                        if (!has && field) field->controlTextDidEndEditing();
                                      });
  return HStack(
      {.spacing = 4},
      {Button(text,
              [weak] {
                if (const auto pressed = weak.lock()) pressed->focus();
              })
           .frame({.minWidth = RecorderCocoa::minimumWidth})
           .focused(keyboard)
           .placed(recorder->place)
           .accessibilityLabel(spoken(*this, *recorder))
           .onAppear([weak] {
             if (const auto shown = weak.lock()) shown->viewDidMoveToWindow();
           }),
       Button(
           Symbol("xmark.circle").frame({.height = cancelSize}),
           [weak] {
             if (const auto pressed = weak.lock()) pressed->performCancelClick();
           },
           ButtonStyle::borderless)
           .help("Clear Shortcut")
           .accessibilityLabel("Clear shortcut " + title)
           .opacity(recorder->showsCancelButton() ? 0.7 : 0)
           .disabled(!recorder->showsCancelButton())});
}

View Recorder::hint() const {
  const auto stored = name.shortcut();
  const bool isRefused = stored && !control.get()->isRecording() &&
                         !CarbonKeyboardShortcuts::isRegistered(*stored) &&
                         !GetEventDispatcherTarget().notice();
  return when(isRefused, [&] {
    return Text("Another program uses " + spelledOut(stored->description()) + ".")
        .font(Font::caption)
        .foregroundColor(Color::Role::red)
        .accessibilityRole(AccessibilityRole::alert);
  });
}

View Recorder::body() const {
  const auto granted = GetEventDispatcherTarget().grantedTrigger(name.rawValue());
  const auto given = [&] {
    return VStack({.spacing = 0, .alignment = Alignment::leading},
                  {Text(granted->empty() ? "Not set" : *granted),
                   Text("Set in the desktop's own settings.")
                       .font(Font::caption)
                       .foregroundColor(Color::Role::secondary)});
  };
  return HStack({.spacing = 8},
                {when(!title.empty(),
                      [&] {
                        return Text(title)
                            .lineLimit(1)
                            .frame({.width = titleWidth, .alignment = Alignment::leading});
                      }),
                 granted ? given() : field(), hint()});
}

}  // namespace velkin::KeyboardShortcuts
