#pragma once

#include "Keyboard/GlobalShortcutChanges.h"
#include "Keyboard/QKKeyboardShortcuts.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/View.h"
#include "UserData/AdditionalViews.h"
#include "Values/PageDelegates.h"

#include <memory>
#include <string>

namespace velkin {

/// The reference of shortcuts: a section for each category, in two columns, and below them the recorders of
/// the global ones. It follows a change of those, and of the additional views, at once.
struct ShortcutsUIView {
  AboutUIViewDelegate* delegate = nullptr;
  /// Points.
  double gridWidth = 190;
  double viewPadding = 16;
  platform::ObservedObject<AdditionalViews> isHemingwayEnabled{std::make_shared<AdditionalViews>()};
  /// A compact form.
  bool useSmallerFonts = false;
  bool showGlobal = true;
  platform::ObservedObject<GlobalShortcutChanges> changes{std::make_shared<GlobalShortcutChanges>()};

  platform::View body() const;
  platform::View globalSection() const;
  platform::View sideBarSection() const;
  platform::View getTextRow(QKKeyboardShortcuts shortcut) const;
  platform::View getShortcutDescriptionStack(const std::string& shortcut, const std::string& desc) const;

 private:
  platform::View section(QKKeyboardShortcutCategory category) const;
  platform::Views rows(QKKeyboardShortcutCategory category) const;
  platform::View heading(QKKeyboardShortcutCategory category) const;
  platform::View footnote() const;
};

}  // namespace velkin
