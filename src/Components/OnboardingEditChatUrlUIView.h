#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSURLSession.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "Values/EasterEggItem.h"

#include <functional>
#include <memory>
#include <string>

namespace velkin {

/// A row that shows an address and edits it. What was typed is stored only once its server has answered, or by
/// the user's express wish.
struct OnboardingEditChatUrlUIView {
  /// Whose address it is.
  EasterEggItem item = EasterEggItem::chatGPT;
  std::string initialText;
  /// Follows what is known of the address that the row shows.
  platform::Binding<bool> isValidURL;
  /// Told of a text that was stored.
  std::function<void(const std::string&)> action = {};
  /// Asks for the address on show when the row appears.
  bool validatesAtFirst = false;
  platform::State<bool> isEditing{false};
  platform::State<std::string> inputText{};
  /// What was stored here last.
  platform::State<std::string> editedText{};
  platform::State<bool> didValidateURL{false};
  platform::State<bool> isFocused{false};
  /// The check under way; a later one, or none, makes its answer void.
  platform::State<std::shared_ptr<platform::NSURLSessionDataTask>> check{};
  platform::State<int> checkNumber{0};

  platform::View body() const;

  /// Asks the address, and stores the text if it answers. A text that doesn't parse changes nothing.
  void validatAndSetUrl(const std::string& text) const;
  /// As that, without storing.
  void validateUrlOnly(const std::string& text) const;

 private:
  std::string shownText() const;
  bool isChecking() const { return check.get() != nullptr; }
  void startEditing() const;
  void resetClicked() const;
  void useAnywayClicked() const;
  void textChanged(const std::string& text) const;
  void validate(const std::string& text, bool stores) const;
  void store(const std::string& text) const;
  void endCheck() const;
  platform::View idleRow() const;
  platform::View editingRow() const;
  platform::View message() const;
};

}  // namespace velkin
