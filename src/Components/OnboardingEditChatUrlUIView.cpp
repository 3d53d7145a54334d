#include "Components/OnboardingEditChatUrlUIView.h"

#include "Helpers/ViewAddresses.h"
#include "Platform/DispatchQueue.h"
#include "Values/AddressText.h"
#include "Values/UserAgents.h"
#include "extenstions/URLReachable.h"

#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr double fieldRadius = 8;
constexpr double messageHeight = 34;
constexpr const char* emptyText = "Click here to enter URL";

}  // namespace

std::string OnboardingEditChatUrlUIView::shownText() const {
  const auto edited = editedText.get();
  return edited.empty() ? initialText : edited;
}

void OnboardingEditChatUrlUIView::startEditing() const {
  // Whoever has no address yet starts from the built-in one.
  const auto shown = shownText();
  inputText.set(shown.empty() ? url(item) : shown);
  didValidateURL.set(false);
  isEditing.set(true);
  isFocused.set(true);
}

void OnboardingEditChatUrlUIView::resetClicked() const {
  endCheck();
  inputText.set(initialText);
  didValidateURL.set(false);
}

void OnboardingEditChatUrlUIView::textChanged(const std::string& text) const {
  if (text == inputText.get()) return;
  endCheck();
  inputText.set(text);
  didValidateURL.set(false);
}

void OnboardingEditChatUrlUIView::endCheck() const {
  checkNumber.set(checkNumber.get() + 1);
  if (const auto task = check.get()) task->cancel();
  check.set(nullptr);
}

void OnboardingEditChatUrlUIView::validatAndSetUrl(const std::string& text) const { validate(text, true); }
void OnboardingEditChatUrlUIView::validateUrlOnly(const std::string& text) const { validate(text, false); }

void OnboardingEditChatUrlUIView::validate(const std::string& text, bool stores) const {
  const auto typed = trimmedAddress(text);
  const auto address = URL::parse(typed);
  if (!address) return;
  endCheck();
  didValidateURL.set(false);
  const int number = checkNumber.get();
  std::shared_ptr<NSURLSessionDataTask> task = isReachable(
      *address,
      [self = *this, number, typed, stores](bool isReached) {
        DispatchQueue::main().async([self, number, typed, stores, isReached] {
          if (self.checkNumber.get() != number) return;
          self.check.set(nullptr);
          // The state first: whoever is told next looks at it.
          self.isValidURL.set(isReached);
          self.didValidateURL.set(true);
          if (isReached && stores) return self.store(typed);
          if (isReached) return;
          if (!self.isEditing.get()) self.inputText.set(typed);
          self.isEditing.set(true);
        });
      },
      customUserAgent(viewOf(item)));
  check.set(std::move(task));
}

void OnboardingEditChatUrlUIView::useAnywayClicked() const {
  const auto typed = trimmedAddress(inputText.get());
  if (!isWebAddress(typed)) return;
  isValidURL.set(true);
  store(typed);
}

void OnboardingEditChatUrlUIView::store(const std::string& text) const {
  if (item == EasterEggItem::chatGPT) UserDefaultsHelper().set(text, UserDefault::onboardingChatURL);
  setUrl(item, text);
  editedText.set(text);
  isEditing.set(false);
  if (action) action(text);
}

View OnboardingEditChatUrlUIView::idleRow() const {
  const auto shown = shownText();
  return Button(Text(shown.empty() ? emptyText : shown)
                    .lineLimit(1)
                    .foregroundColor(shown.empty() ? Color::Role::secondary : Color::Role::primary)
                    .frame({.maxWidth = infinity, .alignment = Alignment::leading}),
                [self = *this] { self.startEditing(); })
      .help("Edit URL")
      .accessibilityLabel(shown.empty() ? std::string(emptyText) : "Edit URL " + shown)
      .frame({.maxWidth = infinity});
}

View OnboardingEditChatUrlUIView::editingRow() const {
  const auto commit = [self = *this] { self.validatAndSetUrl(self.inputText.get()); };
  const bool canCommit = !isChecking() && URL::parse(trimmedAddress(inputText.get())).has_value();
  const auto text =
      Binding<std::string>([inputText = inputText] { return inputText.get(); },
                           [self = *this](const std::string& typed) { self.textChanged(typed); });
  return HStack(
      {.spacing = 4},
      {TextField("https://", text, {.onCommit = commit})
           .focused(isFocused.binding())
           .accessibilityLabel("URL")
           .frame({.maxWidth = infinity}),
       when(isChecking(), [] { return ProgressView().accessibilityLabel("Checking the URL"); }),
       Button("✓", commit, ButtonStyle::borderless).help("Check and save the URL").disabled(!canCommit),
       Button(
           "↺", [self = *this] { self.resetClicked(); }, ButtonStyle::borderless)
           .help("Back to the earlier URL")});
}

View OnboardingEditChatUrlUIView::message() const {
  const bool isRefused = isEditing.get() && didValidateURL.get() && !isValidURL.get();
  // A row that comes and goes would move what stands below it under the pointer.
  return HStack({.spacing = 8},
                {when(isRefused,
                      [] {
                        return Text("URL invalid. Try again.")
                            .lineLimit(1)
                            .foregroundColor(Color::Role::red)
                            .accessibilityRole(AccessibilityRole::alert);
                      }),
                 when(isRefused && isWebAddress(trimmedAddress(inputText.get())),
                      [this] {
                        return Button("Use Anyway", [self = *this] { self.useAnywayClicked(); })
                            .help("Some services don't answer such questions, and work all the same.");
                      })})
      .frame({.minHeight = messageHeight});
}

View OnboardingEditChatUrlUIView::body() const {
  return VStack({.spacing = 4, .alignment = Alignment::fill},
                {isEditing.get() ? View(VStack({.spacing = 0, .alignment = Alignment::fill}, {editingRow()}))
                                 : HStack({.spacing = 0}, {idleRow()}),
                 message()})
      .frame({.maxWidth = infinity})
      .cornerRadius(fieldRadius)
      .onAppear([self = *this] {
        if (self.validatesAtFirst && !self.shownText().empty()) self.validateUrlOnly(self.shownText());
      });
}

}  // namespace velkin
