#include "SearchBar/SearchTextFieldUIView.h"

namespace velkin {

platform::View SearchTextFieldUIView::body() const {
  using namespace platform;
  const Action wake = [isDisabled = isDisabled] {
    if (isDisabled.get()) isDisabled.set(false);
  };
  const auto& name = isMissingApiKey.get() ? keyMissingString : typePromptString;
  const auto field =
      TextField(name, text, {.onCommit = onCommit, .isPlain = true, .onCut = onCut, .onWake = wake})
          .accessibilityLabel(name)
          .font(SystemFont{fontSize, FontWeight::medium, FontDesign::monospaced})
          .foregroundColor(Color::Role::primary)
          .background(Color::Role::clear)
          .disabled(isDisabled.get())
          .focused(isFocused.binding())
          .onChange(text.get(), onChange)
          // Who has got the field back wants to write in it.
          .onChange<bool>(isDisabled.get(), [isFocused = isFocused](bool isOff) {
            if (!isOff) isFocused.set(true);
          });
  return VStack({.spacing = 0, .alignment = Alignment::fill}, {field})
      .frame({.maxWidth = infinity})
      .padding(EdgeInsets::horizontal(4))
      .onTapGesture(wake);
}

}  // namespace velkin
