#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/LoginItem.h"
#include "Platform/NSPopover.h"
#include "Platform/SystemServices.h"
#include "Platform/WholeFile.h"
#include "gtk/GtkFixture.h"
#include "gtk/MockRequestPortal.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gtk/gtkunixprint.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr const char* helper = "com.tarnvale.VelkinLauncher";
constexpr const char* onePage =
    "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
    "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>>endobj\ntrailer<</Root 1 0 R>>\n%%EOF\n";

class SystemServicesTest : public GtkFixture {
 protected:
  /// What dialogues keep open.
  std::unique_ptr<NSPopover> popover = NSPopover::make();

  static std::filesystem::path entry() {
    return std::filesystem::path(g_get_user_config_dir()) / "autostart" / (std::string(helper) + ".desktop");
  }
  static GDBusConnection* connection() {
    // The application isn't run here, so it has none of its own.
    static GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    return bus;
  }
  static GtkWindow* printDialogue() {
    GListModel* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
      const auto each = GObjectPtr<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, i)));
      if (GTK_IS_PRINT_UNIX_DIALOG(each.get())) return each.get();
    }
    return nullptr;
  }
};

TEST_F(SystemServicesTest, ALoginItemIsAnEntryThatDesktopsCanRead) {
  ASSERT_TRUE(LoginItem::setEnabled(helper, true, nullptr));
  GKeyFile* file = g_key_file_new();
  ASSERT_TRUE(g_key_file_load_from_file(file, entry().c_str(), G_KEY_FILE_NONE, nullptr));
  const auto program =
      (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "VelkinLauncher").string();
  const auto read = [&](const char* key) {
    const GStringPtr value(g_key_file_get_string(file, "Desktop Entry", key, nullptr));
    return std::string(value ? value.get() : "(none)");
  };
  EXPECT_EQ(read("Type"), "Application");
  EXPECT_EQ(read("Exec"), program);
  EXPECT_EQ(read("TryExec"), program);
  EXPECT_EQ(read("NoDisplay"), "true");
  g_key_file_unref(file);
  EXPECT_TRUE(LoginItem::setEnabled(helper, true, nullptr)) << "once more is no harm";
  EXPECT_TRUE(LoginItem::setEnabled(helper, false, nullptr));
  EXPECT_FALSE(std::filesystem::exists(entry()));
  EXPECT_TRUE(LoginItem::setEnabled(helper, false, nullptr)) << "what isn't there is off";
}

TEST_F(SystemServicesTest, AHelperThatIsntThereAndAFolderThatIsNoneAreRefused) {
  EXPECT_FALSE(LoginItem::setEnabled("com.tarnvale.Nobody", true, nullptr));
  const auto folder = entry().parent_path();
  std::filesystem::remove_all(folder);
  ASSERT_TRUE(replaceFile(folder, "in the way").has_value());
  EXPECT_FALSE(LoginItem::setEnabled(helper, true, nullptr));
  std::filesystem::remove(folder);
}

TEST_F(SystemServicesTest, ACommandIsQuotedSoThatItsPathComesBack) {
  for (const auto* path : {"/usr/bin/VelkinLauncher", "/a b/x", "/a\"b/$x", "/100%/`x`", "/back\\slash/x"}) {
    GKeyFile* file = g_key_file_new();
    ASSERT_TRUE(g_key_file_load_from_data(file, LoginItem::entryFor(path).c_str(), std::string::npos,
                                          G_KEY_FILE_NONE, nullptr));
    const GStringPtr exec(g_key_file_get_string(file, "Desktop Entry", "Exec", nullptr));
    g_key_file_unref(file);
    ASSERT_TRUE(exec);
    // As the toolkit reads commands: field codes, then quotes.
    std::string command;
    for (const char* c = exec.get(); *c != '\0'; ++c) {
      if (c[0] == '%' && c[1] == '%') ++c;
      command += *c;
    }
    int count = 0;
    char** words = nullptr;
    ASSERT_TRUE(g_shell_parse_argv(command.c_str(), &count, &words, nullptr)) << command;
    EXPECT_EQ(count, 1);
    EXPECT_STREQ(words[0], path);
    g_strfreev(words);
  }
  EXPECT_EQ(LoginItem::quoted("/usr/bin/x"), "/usr/bin/x");
}

TEST_F(SystemServicesTest, InASandboxTheDesktopIsAskedToStartTheProgram) {
  MockRequestPortal portal("org.freedesktop.portal.Background", "RequestBackground");
  LoginItem::askPortal(true, connection());
  ASSERT_TRUE(wait([&] { return portal.calls.size() == 1; }));
  LoginItem::askPortal(false, connection());
  ASSERT_TRUE(wait([&] { return portal.calls.size() == 2; }));
  EXPECT_NE(portal.calls[0].find("'autostart': <true>"), std::string::npos) << portal.calls[0];
  EXPECT_NE(portal.calls[0].find("'commandline': <['velkin']>"), std::string::npos) << portal.calls[0];
  EXPECT_NE(portal.calls[1].find("'autostart': <false>"), std::string::npos);
  LoginItem::askPortal(true, nullptr);
}

class ScreenshotTest : public SystemServicesTest {
 protected:
  std::string take() {
    std::optional<tl::expected<std::string, NSError>> told;
    GtkSystemServices services({connection, [] {}, [] { return nullptr; }});
    services.captureScreen({}, [&](auto picture) { told = std::move(picture); });
    EXPECT_FALSE(told.has_value()) << "never in the same turn";
    EXPECT_TRUE(wait([&] { return told.has_value(); }));
    if (!told) return "no answer";
    return *told ? **told : "error: " + told->error().localizedDescription;
  }
};

TEST_F(ScreenshotTest, ThePictureIsTheOneThatTheDesktopTook) {
  MockRequestPortal portal("org.freedesktop.portal.Screenshot", "Screenshot");
  portal.results = {{"uri", "file:///tmp/picture.png"}};
  EXPECT_EQ(take(), "file:///tmp/picture.png");
  ASSERT_EQ(portal.calls.size(), 1U);
  EXPECT_NE(portal.calls[0].find("'interactive': <true>"), std::string::npos) << portal.calls[0];
}

TEST_F(ScreenshotTest, APortalThatChoosesItsOwnPathIsHeardToo) {
  MockRequestPortal portal("org.freedesktop.portal.Screenshot", "Screenshot");
  portal.usesOwnPath = true;
  portal.results = {{"uri", "file:///tmp/old.png"}};
  EXPECT_EQ(take(), "file:///tmp/old.png");
}

TEST_F(ScreenshotTest, WhoeverSaysNoIsUnderstood) {
  {
    MockRequestPortal portal("org.freedesktop.portal.Screenshot", "Screenshot");
    portal.answer = 1;
    EXPECT_TRUE(take().starts_with("error: "));
    portal.answer = 0;
    EXPECT_EQ(take(), "error: The desktop told of no picture");
  }
  EXPECT_TRUE(take().starts_with("error: ")) << "no portal at all";
}

TEST_F(SystemServicesTest, WithoutASessionBusThereIsNoPicture) {
  GtkSystemServices services({[] { return nullptr; }, [] {}, [] { return nullptr; }});
  std::optional<bool> isTaken;
  services.captureScreen({}, [&](const auto& picture) { isTaken = picture.has_value(); });
  ASSERT_TRUE(wait([&] { return isTaken.has_value(); }));
  EXPECT_FALSE(*isTaken);
}

TEST_F(SystemServicesTest, OurWindowsAreToldWithTheirNumbers) {
  EXPECT_TRUE(CGWindowListCopyWindowInfo().empty());
  show(gtk_label_new("here"));
  const auto windows = CGWindowListCopyWindowInfo();
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_EQ(windows[0].ownerName, "Velkin");
  EXPECT_EQ(windows[0].ownerPID, getpid());
  EXPECT_TRUE(windows[0].number.value_or(0) != 0);
  SystemServices::shared().activate(windows[0].ownerPID);
  SystemServices::shared().activate(1);
}

TEST_F(SystemServicesTest, ADocumentGoesThroughTheDialogueToThePrinterThatWasChosen) {
  show(gtk_label_new("below"));
  const auto file = std::filesystem::temp_directory_path() / "velkin-printed.pdf";
  std::filesystem::remove(file);
  std::optional<std::optional<NSError>> ended;
  SystemServices::shared().printDocument(onePage, NSPrintInfo::shared(),
                                         [&](auto error) { ended = std::move(error); });
  auto* const dialog = GTK_PRINT_UNIX_DIALOG(printDialogue());
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(dialog)), window);
  const auto settings = GObjectPtr<GtkPrintSettings>::adopt(gtk_print_settings_new());
  gtk_print_settings_set_printer(settings.get(), "Print to File");
  const GStringPtr uri(g_filename_to_uri(file.c_str(), nullptr, nullptr));
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_URI, uri.get());
  gtk_print_unix_dialog_set_settings(dialog, settings.get());
  ASSERT_TRUE(wait([&] { return gtk_print_unix_dialog_get_selected_printer(dialog) != nullptr; }));
  gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
  ASSERT_TRUE(wait([&] { return ended.has_value(); }));
  EXPECT_FALSE(ended->has_value()) << (*ended)->localizedDescription;
  const auto printed = readWholeFile(file, 1 << 20);
  ASSERT_TRUE(printed.has_value());
  EXPECT_EQ(printed->bytes, onePage);
  EXPECT_TRUE(wait([&] { return printDialogue() == nullptr; }));
  std::filesystem::remove(file);
}

TEST_F(SystemServicesTest, AViewThatWasNeverShownIsPrintedAtThePapersSizeAndNeverBlank) {
  auto view = GtkPlatform::shared().makeWebView({}, {});
  view->loadHTMLString("<div style='height: 100vh'>one</div><div style='height: 100vh'>two</div>",
                       std::nullopt);
  std::optional<tl::expected<std::string, NSError>> pdf;
  // At once: its process hasn't even begun.
  view->createPDF({}, [&](auto data) { pdf = std::move(data); });
  ASSERT_TRUE(wait([&] { return pdf.has_value(); }));
  ASSERT_TRUE(pdf->has_value()) << pdf->error().localizedDescription;
  EXPECT_EQ(evaluateIn(*view, "innerHeight > 900"), "true");
  EXPECT_TRUE((*pdf)->starts_with("%PDF-"));
}

TEST_F(SystemServicesTest, CancellingPrintsNothing) {
  show(gtk_label_new("below"));
  for (const int response : {int{GTK_RESPONSE_CANCEL}, int{GTK_RESPONSE_DELETE_EVENT}}) {
    std::optional<std::optional<NSError>> ended;
    SystemServices::shared().printDocument(onePage, {}, [&](auto error) { ended = std::move(error); });
    ASSERT_NE(printDialogue(), nullptr);
    if (response == GTK_RESPONSE_CANCEL) {
      gtk_dialog_response(GTK_DIALOG(printDialogue()), response);
    } else {
      gtk_window_close(printDialogue());
    }
    ASSERT_TRUE(wait([&] { return ended.has_value(); }));
    EXPECT_FALSE(ended->has_value());
    EXPECT_TRUE(wait([&] { return printDialogue() == nullptr; }));
  }
}

TEST_F(SystemServicesTest, APageInAWindowIsPrintedByTheDialogueWithItsMargins) {
  auto view = GtkPlatform::shared().makeWebView({}, {});
  view->loadHTMLString("<p>paper</p>", std::nullopt);
  int ended = 0;
  view->printOperation({}, [&] { ++ended; });
  EXPECT_TRUE(wait([&] { return ended == 1; })) << "in no window there is nobody to ask";
  show(dynamic_cast<GtkViewBase&>(*view).widget());
  NSPrintInfo info;
  info.leftMargin = info.rightMargin = info.topMargin = info.bottomMargin = 10;
  view->printOperation(info, [&] { ++ended; });
  auto* const dialog = printDialogue();
  ASSERT_NE(dialog, nullptr);
  auto* const setup = gtk_print_unix_dialog_get_page_setup(GTK_PRINT_UNIX_DIALOG(dialog));
  EXPECT_EQ(gtk_page_setup_get_left_margin(setup, GTK_UNIT_POINTS), 10);
  EXPECT_EQ(gtk_page_setup_get_top_margin(setup, GTK_UNIT_POINTS), 10);
  view->printOperation(info, [&] { ++ended; });
  EXPECT_TRUE(wait([&] { return ended == 2; })) << "one dialogue at a time";
  gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_CANCEL);
  EXPECT_TRUE(wait([&] { return ended == 3; }));
  EXPECT_TRUE(wait([&] { return printDialogue() == nullptr; }));
  gtk_window_set_child(window, nullptr);
}

}  // namespace
}  // namespace platform
