#include "Platform/CarbonEvents.h"
#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/Gtk/X11Desktop.h"
#include "Platform/NSApplication.h"
#include "Platform/NSPopover.h"
#include "gtk/ClipboardOwner.h"
#include "gtk/GtkFixture.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

/// A window with one text field, which has the keyboard once it is up.
struct TextWindow {
  explicit TextWindow(const char* content) : text(gtk_text_new()) {
    gtk_editable_set_text(GTK_EDITABLE(text), content);
    gtk_window_set_child(window, text);
    gtk_window_set_hide_on_close(window, TRUE);
    watchKeys(window);
  }
  ~TextWindow() {
    if (window != nullptr) gtk_window_destroy(window);
  }
  TextWindow(const TextWindow&) = delete;
  TextWindow& operator=(const TextWindow&) = delete;

  bool isAllSelected() const {
    int start = 0;
    int end = 0;
    return gtk_editable_get_selection_bounds(GTK_EDITABLE(text), &start, &end) && end - start > 0;
  }
  void selectNothing() const { gtk_editable_select_region(GTK_EDITABLE(text), 0, 0); }
  std::string content() const { return gtk_editable_get_text(GTK_EDITABLE(text)); }

  GtkWindow* window = GTK_WINDOW(gtk_window_new());
  GtkWidget* text;
};

class GtkEditActionsTest : public GtkFixture {
 protected:
  static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
  void keys(const std::string& keys) { run("xdotool key --delay 5 " + keys); }

  void present(const TextWindow& shown) {
    gtk_window_present(shown.window);
    gtk_widget_grab_focus(shown.text);
    ASSERT_TRUE(wait([&] { return gtk_window_is_active(shown.window) != FALSE; }));
    shown.selectNothing();
  }
};

/// A window that comes up with this time of its last use is given no keyboard by the window manager.
constexpr std::uint32_t noKeyboard = 0;

using Hiding = void (*)(GtkWindow*);

class HiddenWindowTest : public GtkEditActionsTest, public testing::WithParamInterface<Hiding> {};

TEST_P(HiddenWindowTest, IsNotAskedBesideAnother) {
  TextWindow hidden("hidden");
  TextWindow shown("shown");
  present(hidden);
  GetParam()(hidden.window);
  present(shown);
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(shown.isAllSelected());
  EXPECT_FALSE(hidden.isAllSelected());
}

TEST_P(HiddenWindowTest, IsNotAskedWhenItWasMadeLater) {
  TextWindow shown("shown");
  TextWindow hidden("hidden");
  present(hidden);
  GetParam()(hidden.window);
  present(shown);
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(shown.isAllSelected());
  EXPECT_FALSE(hidden.isAllSelected());
}

TEST_P(HiddenWindowTest, IsNotAskedBesideTwoOthers) {
  TextWindow first("first");
  TextWindow second("second");
  TextWindow third("third");
  present(first);
  present(third);
  GetParam()(third.window);
  present(second);
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(second.isAllSelected());
  EXPECT_FALSE(first.isAllSelected());
  EXPECT_FALSE(third.isAllSelected());
}

TEST_P(HiddenWindowTest, IsNotAskedWhenNoOtherIsThere) {
  TextWindow hidden("hidden");
  present(hidden);
  GetParam()(hidden.window);
  ASSERT_TRUE(wait([&] { return !gtk_widget_get_visible(GTK_WIDGET(hidden.window)); }));
  EXPECT_FALSE(sendEditAction("selectAll:"));
  EXPECT_FALSE(hidden.isAllSelected());
}

INSTANTIATE_TEST_SUITE_P(Ways, HiddenWindowTest,
                         testing::Values([](GtkWindow* w) { gtk_widget_set_visible(GTK_WIDGET(w), FALSE); },
                                         [](GtkWindow* w) { gtk_window_close(w); },
                                         [](GtkWindow* w) {
                                           gtk_widget_unmap(GTK_WIDGET(w)),
                                               gtk_widget_set_visible(GTK_WIDGET(w), FALSE);
                                         }));

TEST_F(GtkEditActionsTest, AWindowThatComesBackWithoutTheKeyboardIsNotAsked) {
  TextWindow returning("returning");
  TextWindow shown("shown");
  TextWindow last("last");
  present(returning);
  gtk_widget_set_visible(GTK_WIDGET(returning.window), FALSE);
  present(shown);
  X11Desktop::setUserTime(returning.window, noKeyboard);
  gtk_widget_set_visible(GTK_WIDGET(returning.window), TRUE);
  // Windows come up in the order in which they are asked for: once this one is up, the one before it is.
  present(last);
  ASSERT_TRUE(wait([&] { return X11Desktop::isActive(last.window); }));
  EXPECT_TRUE(gtk_widget_get_mapped(GTK_WIDGET(returning.window)));
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(last.isAllSelected());
  EXPECT_FALSE(shown.isAllSelected());
  EXPECT_FALSE(returning.isAllSelected());
}

/// A page beside a text field, with the keys of the program's router.
class EditOrderTest : public GtkEditActionsTest {
 protected:
  EditOrderTest() : popover(NSPopover::make()), webView(WKWebView::make({}, {})), loads(*webView) {
    monitor = NSApp().addLocalMonitor(NSEvent::mask(NSEvent::EventType::keyDown), [](const NSEvent& event) {
      const bool isTaken = sendEditAction(selectorOf(event));
      return isTaken ? std::nullopt : std::optional(event);
    });
  }
  static const char* selectorOf(const NSEvent& event) {
    const auto character = event.charactersIgnoringModifiers.value_or("");
    constexpr std::uint16_t deleteKey = 0x33;
    if (event.keyCode == deleteKey) return "deleteBackward:";
    if ((event.modifierFlags & NSEvent::commandFlag) == 0) return "";
    if (character == "c") return "copy:";
    if (character == "x") return "cut:";
    if (character == "v") return "paste:";
    return character == "a" ? "selectAll:" : "";
  }

  void showPage(const std::string& html) {
    webView->loadHTMLString(html, std::nullopt);
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    field = gtk_text_new();
    gtk_box_append(GTK_BOX(box), field);
    GtkWidget* page = dynamic_cast<GtkWebView&>(*webView).widget();
    gtk_widget_set_vexpand(page, TRUE);
    gtk_box_append(GTK_BOX(box), page);
    show(box);
    watchKeys(window);
    ASSERT_TRUE(wait([&] { return loads.finished == 1; }));
    webView->makeFirstResponder();
    ASSERT_TRUE(wait([&] {
      return gtk_window_is_active(window) && evaluateIn(*webView, "document.hasFocus()") == "true";
    }));
  }
  std::string fieldText() const { return gtk_editable_get_text(GTK_EDITABLE(field)); }
  static void putOnClipboard(const char* text) {
    gdk_clipboard_set_text(gdk_display_get_clipboard(gdk_display_get_default()), text);
  }

  struct Loads : WKNavigationDelegate {
    explicit Loads(WKWebView& view) { view.navigationDelegate = this; }
    int finished = 0;
    void didFinish(WKWebView&) override { ++finished; }
  };

  std::unique_ptr<NSPopover> popover;
  std::unique_ptr<WKWebView> webView;
  Loads loads;
  GtkWidget* field = nullptr;
  Connection monitor;
};

/// Copying takes this page half a second.
const std::string slowCopy =
    "<p id=p>needle</p><script>addEventListener('copy', () => { const end = Date.now() + 500; "
    "while (Date.now() < end); }); getSelection().selectAllChildren(p);</script>";

TEST_F(EditOrderTest, APasteWaitsForTheCopyUnderWay) {
  putOnClipboard("old");
  showPage(slowCopy);
  keys("ctrl+c");
  ASSERT_TRUE(wait([] { return editOrder() == EditOrder::nextActionWaits; }));
  gtk_widget_grab_focus(field);
  keys("ctrl+v");
  ASSERT_TRUE(wait([&] { return !fieldText().empty(); }));
  EXPECT_EQ(fieldText(), "needle");
}

TEST_F(EditOrderTest, KeysBehindAPasteThatWaitsWaitToo) {
  putOnClipboard("old");
  showPage(slowCopy);
  keys("ctrl+c");
  ASSERT_TRUE(wait([] { return editOrder() == EditOrder::nextActionWaits; }));
  gtk_widget_grab_focus(field);
  keys("ctrl+v s BackSpace exclam");
  ASSERT_TRUE(wait([&] { return fieldText().ends_with("!"); })) << fieldText();
  EXPECT_EQ(fieldText(), "needle!");
}

TEST_F(EditOrderTest, SelectAllAndCopyAtOnceCopyWhatIsSelectedThen) {
  putOnClipboard("old");
  showPage("<textarea id=t autofocus>needle</textarea><script>t.focus(); t.setSelectionRange(0, 0)</script>");
  ASSERT_TRUE(wait([&] { return evaluateIn(*webView, "document.activeElement.id") == "\"t\""; }));
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(sendEditAction("copy:"));
  ASSERT_TRUE(wait([] { return editOrder() == EditOrder::free; }));
  gtk_widget_grab_focus(field);
  keys("ctrl+v");
  ASSERT_TRUE(wait([&] { return !fieldText().empty(); }));
  EXPECT_EQ(fieldText(), "needle");
}

TEST_F(EditOrderTest, CopyingNothingLeavesTheClipboardAlone) {
  putOnClipboard("old");
  showPage("<textarea id=t autofocus></textarea><script>t.focus()</script>");
  ASSERT_TRUE(wait([&] { return evaluateIn(*webView, "document.activeElement.id") == "\"t\""; }));
  EXPECT_TRUE(sendEditAction("selectAll:"));
  EXPECT_TRUE(sendEditAction("copy:"));
  ASSERT_TRUE(wait([] { return editOrder() == EditOrder::free; }));
  gtk_widget_grab_focus(field);
  keys("ctrl+v");
  ASSERT_TRUE(wait([&] { return !fieldText().empty(); }));
  EXPECT_EQ(fieldText(), "old");
}

TEST_F(EditOrderTest, APageThatHangsHoldsUpOnePasteAndNoOtherKey) {
  putOnClipboard("old");
  showPage("<p id=p>needle</p><script>getSelection().selectAllChildren(p);</script>");
  webView->evaluateJavaScript("for (;;);");
  keys("ctrl+c");
  ASSERT_TRUE(wait([] { return editOrder() != EditOrder::free; }));
  gtk_widget_grab_focus(field);
  keys("a");
  ASSERT_TRUE(wait([&] { return fieldText() == "a"; })) << "an ordinary key waits for nobody";
  ASSERT_EQ(editOrder(), EditOrder::nextActionWaits) << "or the line above proves nothing";
  keys("ctrl+v");
  ASSERT_TRUE(wait([&] { return fieldText() == "aold"; })) << fieldText();
}

TEST_F(EditOrderTest, AnOwnerOfTheClipboardThatNeverAnswersDoesntKeepThePage) {
  putOnClipboard("old");
  showPage("<textarea id=t autofocus></textarea><script>t.focus()</script>");
  ASSERT_TRUE(wait([&] { return evaluateIn(*webView, "document.activeElement.id") == "\"t\""; }));
  ClipboardOwner silent("UTF8_STRING", "never");
  silent.staysSilent = true;
  ASSERT_TRUE(wait(isTextOnClipboard));
  keys("ctrl+v");
  ASSERT_TRUE(wait([] { return editOrder() != EditOrder::free; }));
  ASSERT_TRUE(wait([] { return editOrder() == EditOrder::free; }));
  EXPECT_EQ(evaluateIn(*webView, "t.value"), "\"\"");
  putOnClipboard("new");
  keys("ctrl+v");
  EXPECT_TRUE(wait([&] { return evaluateIn(*webView, "t.value") == "\"new\""; }));
}

}  // namespace
}  // namespace platform
