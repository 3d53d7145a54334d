#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/WindowAppearance.h"
#include "Values/EasterEggItem.h"

#include <functional>
#include <memory>
#include <string>

namespace velkin {

/// A row of the list of addresses: what is typed is stored as it is, once the user says so.
struct EasterEggFeatureLabelUIView {
  /// Its position in the list.
  int id = 0;
  EasterEggItem item = EasterEggItem::chatGPT;
  platform::State<bool> isEditable{true};
  platform::State<std::string> inputText{};
  /// What was stored here last.
  platform::State<std::string> editedText{};
  /// The key is legible while its button is held down.
  platform::State<bool> isKeyShown{false};
  platform::Binding<int> currentPage = platform::Binding<int>::constant(0);
  std::function<void(const std::string&)> action = {};
  /// Its layout follows the window's width.
  platform::ObservedObject<WindowAppearance> window{std::make_shared<WindowAppearance>()};

  platform::View body() const;

 private:
  bool isKey() const { return item == EasterEggItem::search; }
  bool isUnchanged() const;
  void saveClicked() const;
  void resetClicked() const;
  std::string placeholder() const;
  platform::View field() const;
  platform::View showKeyButton() const;
};

}  // namespace velkin
