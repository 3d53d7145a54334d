#include "WebView/FindTextBarUIView.h"

namespace velkin {

using namespace platform;

View FindTextButton::body() const {
  return Button(Text(text).lineLimit(1).foregroundColor(foreground), action, ButtonStyle::borderless)
      .disabled(isDisabled);
}

View FindPrevNextUIView::body() const {
  return HStack({.spacing = 0, .alignment = Alignment::fill},
                {FindTextButton{" ⟨ ", prevAction, foreground, isDisabled}, Divider(),
                 FindTextButton{" ⟩ ", nextAction, foreground, isDisabled}});
}

View FocusableTextField::body() const {
  const Binding<std::string> edited([titleText = titleText] { return titleText.get(); },
                                    [onChange = onChange](const std::string& text) { onChange(text); });
  return TextField(placeholder, edited, {.onCommit = onCommit}).focused(shouldFocus);
}

View FindTextFieldUIView::body() const {
  return FocusableTextField{"Search", text, shouldBeFocusOnAppear, onCommit, onChange};
}

View FindTextBarUIView::body() const {
  return HStack({.spacing = 6},
                {when(!isNotFoundTextHidden.get(),
                      [] {
                        return Text("Not\nfound").font(Font::caption).foregroundColor(Color::Role::secondary);
                      }),
                 FindTextFieldUIView{text, shouldFocus, onChange, onCommit},
                 FindPrevNextUIView{.prevAction = previousClicked,
                                    .nextAction = nextClicked,
                                    .isDisabled = isPrevNextButtonDisabled.get()},
                 FindTextButton{.text = "Done", .action = onDone}, webVButtons})
      .padding(padding)
      .frame({.maxWidth = infinity})
      .background({Color::Role::underPageBackground, 0.6});
}

}  // namespace velkin
