#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <functional>
#include <string>

namespace velkin {

/// A text button of the find bar.
struct FindTextButton {
  std::string text;
  /// What a screen reader says; empty for the text itself.
  std::string name;
  platform::Action action;
  platform::Color foreground = platform::Color::Role::primary;
  bool isDisabled = false;

  platform::View body() const;
};

/// The two step buttons.
struct FindPrevNextUIView {
  platform::Action prevAction;
  platform::Action nextAction;
  platform::Color foreground = platform::Color::Role::primary;
  bool isDisabled = false;

  platform::View body() const;
};

/// A search field that can take the keyboard by itself. An edit is told as it happens, Return as a commit.
struct FocusableTextField {
  std::string placeholder;
  platform::Binding<std::string> titleText;
  platform::Binding<bool> shouldFocus;
  platform::Action onCommit;
  std::function<void(const std::string&)> onChange;

  platform::View body() const;
};

/// The find bar's field.
struct FindTextFieldUIView {
  platform::Binding<std::string> text;
  platform::Binding<bool> shouldBeFocusOnAppear;
  std::function<void(const std::string&)> onChange;
  platform::Action onCommit;

  platform::View body() const;
};

/// The strip above a page in which text is looked for.
struct FindTextBarUIView {
  double padding = 4;
  platform::Binding<bool> shouldFocus;
  platform::Binding<bool> isPrevNextButtonDisabled;
  platform::Binding<bool> isNotFoundTextHidden;
  platform::Binding<std::string> text;
  platform::Action onCommit;
  std::function<void(const std::string&)> onChange;
  platform::Action previousClicked;
  platform::Action nextClicked;
  platform::Action onDone;
  /// A further control at the end of the bar.
  platform::View webVButtons;

  platform::View body() const;
};

}  // namespace velkin
