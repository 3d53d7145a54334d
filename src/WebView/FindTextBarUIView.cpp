#include "WebView/FindTextBarUIView.h"

namespace velkin {

using namespace platform;

namespace {

constexpr double notFoundWidth = 44;
/// As high as what comes in its place.
constexpr const char* twoEmptyLines = " \n ";

}  // namespace

View FindTextButton::body() const {
  return Button(Text(text).lineLimit(1).foregroundColor(foreground), action, ButtonStyle::borderless)
      .accessibilityLabel(name.empty() ? text : name)
      .disabled(isDisabled);
}

View FindPrevNextUIView::body() const {
  return HStack({.spacing = 0, .alignment = Alignment::fill},
                {FindTextButton{" ⟨ ", "Previous match", prevAction, foreground, isDisabled}, Divider(),
                 FindTextButton{" ⟩ ", "Next match", nextAction, foreground, isDisabled}});
}

View FocusableTextField::body() const {
  const Binding<std::string> edited([titleText = titleText] { return titleText.get(); },
                                    [onChange = onChange](const std::string& text) { onChange(text); });
  return TextField(placeholder, edited, {.onCommit = onCommit})
      .accessibilityLabel("Find in page")
      .focused(shouldFocus);
}

View FindTextFieldUIView::body() const {
  return FocusableTextField{"Search", text, shouldBeFocusOnAppear, onCommit, onChange};
}

View FindTextBarUIView::body() const {
  return HStack({.spacing = 6}, {Text(isNotFoundTextHidden.get() ? twoEmptyLines : "Not\nfound")
                                     .font(Font::caption)
                                     .foregroundColor(Color::Role::secondary)
                                     .accessibilityRole(AccessibilityRole::status)
                                     // Its place is kept: the field is where it was when it comes.
                                     .frame({.width = notFoundWidth}),
                                 FindTextFieldUIView{text, shouldFocus, onChange, onCommit},
                                 FindPrevNextUIView{.prevAction = previousClicked,
                                                    .nextAction = nextClicked,
                                                    .isDisabled = isPrevNextButtonDisabled.get()},
                                 FindTextButton{.text = "Done", .action = onDone}, webVButtons})
      .padding(padding)
      .frame({.maxWidth = infinity})
      .background({Color::Role::underPageBackground, 0.6})
      .accessibilityRole(AccessibilityRole::toolbar)
      .accessibilityLabel("Find");
}

}  // namespace velkin
