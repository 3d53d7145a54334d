#include "Keyboard/GlobalShortcutsNoticeUIView.h"

#include "Platform/NSPasteboard.h"

namespace velkin {

using platform::Alignment;
using platform::Color;
using platform::Font;
using platform::Text;
using platform::View;

platform::View GlobalShortcutsNoticeUIView::body() const {
  constexpr double width = 420;
  constexpr double lineSpacing = 12;
  constexpr double labelSpacing = 2;
  platform::Views rows = {Text(notice.text)
                              .multilineTextAlignment(Alignment::leading)
                              .frame({.width = width, .alignment = Alignment::leading})};
  for (const auto& command : notice.commands) {
    rows.push_back(platform::VStack(
        {.spacing = labelSpacing, .alignment = Alignment::leading},
        {Text(command.what).font(Font::headline),
         platform::HStack({Text(command.commandLine)
                               .font(Font::monospaced)
                               .foregroundColor(Color::Role::secondary)
                               .selectable(),
                           platform::Button(
                               platform::Symbol("doc.on.doc"),
                               [line = command.commandLine] {
                                 auto& pasteboard = platform::NSPasteboard::generalPasteboard();
                                 pasteboard.clearContents();
                                 pasteboard.setString(line, platform::NSPasteboardTypeString);
                               },
                               platform::ButtonStyle::borderless)
                               .help("Copy the command")
                               .accessibilityLabel("Copy the command for: " + command.what)})}));
  }
  rows.push_back(desktopKeySettingsButton());
  return platform::VStack({.spacing = lineSpacing, .alignment = Alignment::leading}, std::move(rows))
      .padding(platform::EdgeInsets::all(lineSpacing));
}

platform::View desktopKeySettingsButton() {
  auto open = platform::GetEventDispatcherTarget().settingsOpener();
  if (!open) return platform::EmptyView();
  return platform::Button("Open Keyboard Settings…", std::move(open))
      .help("Opens the desktop's own settings of keys");
}

platform::View globalShortcutsNotice() {
  const auto notice = platform::GetEventDispatcherTarget().notice();
  return notice ? View(GlobalShortcutsNoticeUIView{*notice}) : platform::EmptyView();
}

}  // namespace velkin
