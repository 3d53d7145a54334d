#include "Keyboard/ShortcutsUIView.h"

#include "Keyboard/GlobalShortcutsEditUIView.h"
#include "Keyboard/ShortcutLegend.h"

#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr double compactSpacing = 1;
constexpr double spacing = 4;
constexpr double columnSpacing = 24;

constexpr std::array leftColumn = {QKKeyboardShortcutCategory::misc, QKKeyboardShortcutCategory::scroll};
constexpr std::array rightColumn = {QKKeyboardShortcutCategory::view, QKKeyboardShortcutCategory::navigation,
                                    QKKeyboardShortcutCategory::window};

}  // namespace

View ShortcutsUIView::getShortcutDescriptionStack(const std::string& shortcut,
                                                  const std::string& desc) const {
  const auto font = useSmallerFonts ? Font::caption : Font::body;
  return HStack({.spacing = spacing},
                {Text(desc).font(font).frame({.maxWidth = infinity, .alignment = Alignment::leading}),
                 when(!shortcut.empty(),
                      [&] {
                        // The glyphs have no names that a screen reader could say.
                        return Text(shortcut)
                            .font(font)
                            .foregroundColor(Color::Role::secondary)
                            .accessibilityLabel(spelledOut(shortcut));
                      })})
      .frame({.width = gridWidth});
}

View ShortcutsUIView::getTextRow(QKKeyboardShortcuts shortcut) const {
  return getShortcutDescriptionStack(getDisplayString(keyEquivalent(shortcut), category(shortcut)),
                                     std::string(rawValue(shortcut)));
}

View ShortcutsUIView::heading(QKKeyboardShortcutCategory category) const {
  return Text(std::string(rawValue(category)))
      .font(useSmallerFonts ? Font::caption : Font::headline)
      .bold()
      .frame({.width = gridWidth, .alignment = Alignment::leading})
      .padding(EdgeInsets{useSmallerFonts ? compactSpacing : spacing, 0, 0, 0})
      .accessibilityRole(AccessibilityRole::heading);
}

Views ShortcutsUIView::rows(QKKeyboardShortcutCategory category) const {
  Views all;
  for (std::size_t i = 0; i < qkKeyboardShortcutCount; ++i) {
    const auto shortcut = static_cast<QKKeyboardShortcuts>(i);
    if (velkin::category(shortcut) == category) all.push_back(getTextRow(shortcut));
  }
  return all;
}

View ShortcutsUIView::section(QKKeyboardShortcutCategory category) const {
  auto all = rows(category);
  all.insert(all.begin(), heading(category));
  return VStack({.spacing = useSmallerFonts ? compactSpacing : spacing, .alignment = Alignment::leading},
                std::move(all));
}

View ShortcutsUIView::globalSection() const {
  return VStack({.spacing = useSmallerFonts ? compactSpacing : spacing, .alignment = Alignment::leading},
                {heading(QKKeyboardShortcutCategory::global),
                 HStack({.spacing = columnSpacing, .alignment = Alignment::top},
                        rows(QKKeyboardShortcutCategory::global))});
}

View ShortcutsUIView::footnote() const {
  const auto text = std::string("-- Edit URL") + (isHemingwayEnabled->get() ? "s" : "") + " & API Key --";
  auto label = Text(text).font(Font::footnote).foregroundColor(Color::Role::secondary);
  if (delegate == nullptr) return label;
  return Button(
      label, [target = delegate] { target->didClickEditUrlsButton(); }, ButtonStyle::borderless);
}

View ShortcutsUIView::sideBarSection() const { return section(QKKeyboardShortcutCategory::sideBar); }

View ShortcutsUIView::body() const {
  const StackOptions column{.spacing = useSmallerFonts ? spacing : 2 * spacing,
                            .alignment = Alignment::leading};
  Views left;
  for (const auto category : leftColumn) left.push_back(section(category));
  left.push_back(when(isHemingwayEnabled->get(), [this] { return sideBarSection(); }));
  Views right;
  for (const auto category : rightColumn) right.push_back(section(category));
  return VStack(column, {when(showGlobal, [this] { return globalSection(); }),
                         HStack({.spacing = columnSpacing, .alignment = Alignment::top},
                                {VStack(column, std::move(left)), VStack(column, std::move(right))}),
                         Divider(), GlobalShortcutsEditUIView{.useSmallerFonts = useSmallerFonts},
                         HStack({.spacing = columnSpacing},
                                {Text(std::string(shortcutLegend))
                                     .font(Font::caption)
                                     .foregroundColor(Color::Role::secondary)
                                     .frame({.maxWidth = infinity, .alignment = Alignment::leading}),
                                 footnote()})})
      .padding(viewPadding);
}

}  // namespace velkin
