#include "Markdown/MarkdownUIView.h"

#include "Components/MarkdownHtmlHelper.h"
#include "Components/MarkdownWebUIView.h"
#include "Markdown/MarkdownFooterUIView.h"
#include "Markdown/MarkdownHeaderUIView.h"
#include "Markdown/MarkdownTextUIView.h"
#include "Markdown/SampleMarkdown.h"

#include <algorithm>
#include <utility>

namespace velkin {

using namespace platform;

namespace {

constexpr double smallestZoom = 0.05;
constexpr StackOptions tight = {.spacing = 0, .alignment = Alignment::fill};

const char* noticeFor(NSTextView::Refusal reason) {
  switch (reason) {
    case NSTextView::Refusal::tooLong:
      return "Too long: the scratchpad holds 16 MB. Nothing was changed.";
    case NSTextView::Refusal::notText:
      return "This is no text. Nothing was changed.";
    case NSTextView::Refusal::unreadable:
      return "This can't be read. Nothing was changed.";
    case NSTextView::Refusal::noAnswer:
      break;
  }
  return "The program that copied this doesn't answer. Nothing was changed.";
}

/// The zoom has no lower limit on the tool bar; a page's has.
Binding<double> pageZoom(const State<double>& zoom) {
  return {[zoom] { return std::max(zoom.get(), smallestZoom); }, [zoom](double now) { zoom.set(now); }};
}

/// A line over the editor, quiet enough to be passed over.
View bar(const std::string& text, AccessibilityRole role, View button, Action dismiss) {
  return HStack({.spacing = 6}, {Text(text).font(Font::callout).lineLimit(1), std::move(button), Spacer(),
                                 Button(Symbol("xmark"), std::move(dismiss), ButtonStyle::borderless)
                                     .help("Dismiss")
                                     .leavesKeyboard()})
      .padding(EdgeInsets{2, 8, 2, 8})
      .background(Color::Role::underPageBackground)
      .accessibilityRole(role);
}

}  // namespace

std::shared_ptr<const markdown::MarkdownParser> MarkdownUIView::makeParser() {
  return std::make_shared<const markdown::MarkdownParser>(MarkdownHtmlHelper::makeParser());
}

Binding<std::string> MarkdownUIView::text() const {
  return {[markdown = markdown] { return markdown.get(); },
          [weak = std::weak_ptr(pad)](const std::string& text) {
            if (const auto present = weak.lock()) present->editor().setString(text);
          }};
}

void MarkdownUIView::textChanged(const std::string& newValue) const {
  const auto before = markdown.get();
  markdown.set(newValue);
  // On disk before the main loop goes on.
  if (!pad->keep(before, newValue))
    notice.set("This text can't be kept on disk, and is lost when the scratchpad closes.");
  pad->conversion().convert(parser.get(), newValue,
                            [html = html](const std::string& made) { html.set(made); });
  if (onChange) onChange(newValue);
}

void MarkdownUIView::bringBackClicked() const {
  canBringBack.set(false);
  if (const auto last = pad->lastText()) pad->editor().setString(*last);
  pad->takeKeyboard();
}

void MarkdownUIView::appeared() const {
  if (!markdown.get().empty()) return;
  auto& editor = pad->editor();
  const bool isNew = !editor.canUndo() && !editor.canRedo();
  if (isNew) canBringBack.set(pad->lastText().has_value());
  editor.setString(std::string(sampleMarkdown),
                   isNew ? NSTextView::UndoHistory::forgotten : NSTextView::UndoHistory::kept);
}

void MarkdownUIView::refused(NSTextView::Refusal reason) const { notice.set(noticeFor(reason)); }

View MarkdownUIView::editor() const {
  auto& textView = pad->editor();
  // The editor belongs to the pad: what it holds mustn't keep the pad.
  auto self = *this;
  self.pad.reset();
  const auto withPad = [self, weak = std::weak_ptr(pad)](const auto& action) {
    const auto present = weak.lock();
    if (!present) return;
    auto whole = self;
    whole.pad = present;
    action(whole);
  };
  textView.didRefuse = [withPad](NSTextView::Refusal reason) {
    withPad([reason](const MarkdownUIView& view) { view.refused(reason); });
  };
  const MarkdownTextUIView view{
      .textView = &textView,
      .fontSize = fontSize.binding(),
      .isFind = isFind.binding(),
      .isPrevNextButtonDisabled = isPrevNextButtonDisabled.binding(),
      .isNotFoundTextHidden = isNotFoundTextHidden.binding(),
      .markdown = text(),
      .isShowingPreviewVertically = isShowingPreviewVertically.binding(),
      .isShowingPreviewHorizontally = isShowingPreviewHorizontally.binding(),
      .onCommit = onCommit,
      .onChange = [withPad](const std::string& newValue) {
        withPad([&newValue](const MarkdownUIView& present) { present.textChanged(newValue); });
      }};
  view.follow();
  return view;
}

View MarkdownUIView::bars() const {
  return VStack(tight, {when(canBringBack.get(),
                             [this] {
                               return bar("", AccessibilityRole::status,
                                          Button(
                                              "Bring back your last text",
                                              [self = *this] { self.bringBackClicked(); }, ButtonStyle::link)
                                              .leavesKeyboard(),
                                          [canBringBack = canBringBack] { canBringBack.set(false); });
                             }),
                        when(!notice.get().empty(), [this] {
                          return bar(notice.get(), AccessibilityRole::alert, EmptyView(),
                                     [notice = notice] { notice.set(""); });
                        })});
}

View MarkdownUIView::panes() const {
  const bool isRight = isShowingPreviewVertically.get();
  const bool isShown = isRight || isShowingPreviewHorizontally.get();
  Views all = {editor(), when(isShown, [] { return Divider(); }), when(isShown, [this] {
                 return View(MarkdownWebUIView{.zoomLevel = pageZoom(webZoom),
                                               .controller = pad->preview(),
                                               .markdownState = html.binding()})
                     .frame({.maxWidth = infinity, .maxHeight = infinity});
               })};
  const auto stack = isRight ? HStack(tight, std::move(all)) : VStack(tight, std::move(all));
  return stack.frame({.maxWidth = infinity, .maxHeight = infinity});
}

View MarkdownUIView::body() const {
  return VStack(tight,
                {MarkdownHeaderUIView{.pad = pad,
                                      .fontSize = fontSize.binding(),
                                      .webZoom = webZoom.binding(),
                                      .isShowingPreviewVertically = isShowingPreviewVertically.binding(),
                                      .isShowingPreviewHorizontally = isShowingPreviewHorizontally.binding()},
                 Divider(), bars(), panes(), Divider(),
                 MarkdownFooterUIView{.pad = pad,
                                      .isShowingPreviewVertically = isShowingPreviewVertically.binding(),
                                      .isShowingPreviewHorizontally = isShowingPreviewHorizontally.binding(),
                                      .markdown = text(),
                                      .fontSize = fontSize.binding(),
                                      .webViewZoom = webZoom.binding()}})
      .onAppear([self = *this] { self.appeared(); });
}

}  // namespace velkin
