"""check-layers lets the good tree pass and refuses each kind of bad include."""
import pathlib
import subprocess
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check-layers"


class CheckLayers(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for header in (
            "AppDelegate.h",
            "MenuHelper.h",
            "MenuHelperDelegate.h",
            "Appearance/AppearanceWidth.h",
            "Helpers/ScriptingHelper.h",
            "Keyboard/Router.h",
            "MarkdownEngine/Reader.h",
            "Platform/NSTimer.h",
            "Platform/Gtk/GtkPlatform.h",
            "Platform/Headless/HeadlessPlatform.h",
            "UserData/Store.h",
            "WebView/WebView.h",
            "WebView/WebViewSwitchType.h",
            "extenstions/NSImage.h",
        ):
            self.write("src/" + header, "#pragma once\n")

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def run_(self):
        return subprocess.run([TOOL, "--root", self.root], capture_output=True, text=True)

    def assertPasses(self, path, include):
        self.write(path, f"#include {include}\n")
        done = self.run_()
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def assertRefuses(self, path, include):
        self.write(path, f"// first line\n#include {include}\n")
        done = self.run_()
        self.assertEqual(done.returncode, 1, f"{path} may include {include}: {done.stdout}{done.stderr}")
        self.assertIn(f"{path}:2: ", done.stdout)

    def testDownwardIncludesPass(self):
        for path, include in (
            ("src/main.cpp", '"Platform/Gtk/GtkPlatform.h"'),
            ("src/main.cpp", '"AppDelegate.h"'),
            ("src/AppDelegate.cpp", '"WebView/WebView.h"'),
            ("src/WebView/WebView.cpp", '"Appearance/AppearanceWidth.h"'),
            ("src/WebView/WebView.cpp", '"Keyboard/Router.h"'),
            ("src/Keyboard/Router.cpp", '"UserData/Store.h"'),
            ("src/Platform/Gtk/GtkPlatform.cpp", "<gtkmm.h>"),
            ("src/Platform/Gtk/GtkPlatform.cpp", '"Platform/NSTimer.h"'),
            ("src/Launcher/main.cpp", "<gio/gio.h>"),
            ("src/MarkdownEngine/Reader.cpp", "<unicode/brkiter.h>"),
            ("src/MarkdownEngine/Reader.cpp", '"MarkdownEngine/Reader.h"'),
        ):
            with self.subTest(path=path, include=include):
                self.assertPasses(path, include)

    def testPlainRecordsMayBeReadByTheStore(self):
        self.assertPasses("src/UserData/Store.cpp", '"WebView/WebViewSwitchType.h"')

    def testDelegatesOfTheCoreMayBeCalledFromBelow(self):
        self.assertPasses("src/Keyboard/Router.cpp", '"MenuHelperDelegate.h"')

    def testDesktopHeadersAreRefusedOutsideTheirFolder(self):
        for include in (
            "<gtkmm.h>",
            "<gtkmm/button.h>",
            "<gtk/gtk.h>",
            "<gdk/x11/gdkx.h>",
            "<glib.h>",
            "<glib-object.h>",
            "<glibmm/ustring.h>",
            "<gio/gio.h>",
            "<giomm.h>",
            "<sigc++/sigc++.h>",
            "<adwaita.h>",
            "<webkit/webkit.h>",
            "<libsoup/soup.h>",
            "<X11/Xlib.h>",
            "<xcb/xcb.h>",
            "<xkbcommon/xkbcommon.h>",
            "<cairo.h>",
            '"gtk/gtk.h"',
        ):
            for path in ("src/WebView/WebView.cpp", "src/Platform/NSTimer.cpp", "src/Platform/Headless/X.cpp"):
                with self.subTest(path=path, include=include):
                    self.assertRefuses(path, include)
                    (self.root / path).unlink()

    def testUpwardIncludesAreRefused(self):
        for path, include in (
            ("src/WebView/WebView.cpp", '"AppDelegate.h"'),
            ("src/WebView/WebView.cpp", '"MenuHelper.h"'),
            ("src/WebView/WebView.cpp", '"../MenuHelper.h"'),
            ("src/WebView/WebView.cpp", "<MenuHelper.h>"),
            ("src/Keyboard/Router.cpp", '"WebView/WebView.h"'),
            ("src/UserData/Store.cpp", '"WebView/WebView.h"'),
            ("src/Helpers/ScriptingHelper.cpp", '"Keyboard/Router.h"'),
            ("src/extenstions/NSImage.cpp", '"UserData/Store.h"'),
            ("src/Platform/NSTimer.cpp", '"extenstions/NSImage.h"'),
            ("src/Platform/NSTimer.cpp", '"Platform/Gtk/GtkPlatform.h"'),
            ("src/Platform/NSTimer.cpp", '"Platform/Headless/HeadlessPlatform.h"'),
            ("src/Platform/Gtk/GtkPlatform.cpp", '"WebView/WebView.h"'),
            ("src/Platform/Gtk/GtkPlatform.cpp", '"Platform/Headless/HeadlessPlatform.h"'),
            ("src/Platform/Headless/X.cpp", '"Helpers/ScriptingHelper.h"'),
            ("src/AppDelegate.cpp", '"Platform/Gtk/GtkPlatform.h"'),
            ("src/MarkdownEngine/Reader.cpp", '"Platform/NSTimer.h"'),
        ):
            with self.subTest(path=path, include=include):
                self.assertRefuses(path, include)
                (self.root / path).unlink()

    def testAFolderWithoutALayerIsRefused(self):
        self.write("src/Misc/Thing.h", "#pragma once\n")
        done = self.run_()
        self.assertEqual(done.returncode, 1)
        self.assertIn("src/Misc/Thing.h", done.stdout)

    def testUnitTestsNeedNoDesktop(self):
        self.assertRefuses("tests/unit/FooTest.cpp", "<gtkmm.h>")

    def testTheTreeItselfIsClean(self):
        done = subprocess.run([TOOL], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout)


if __name__ == "__main__":
    unittest.main()
