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
            "Appearance/SizePickerUIView.h",
            "Components/AppIconUIView.h",
            "Controller/Sidebars.h",
            "Helpers/ScriptingHelper.h",
            "Keyboard/Router.h",
            "MarkdownEngine/Reader.h",
            "Platform/NSTimer.h",
            "Platform/Gtk/GtkPlatform.h",
            "Platform/Headless/HeadlessPlatform.h",
            "UserData/Store.h",
            "WebView/WebView.h",
            "Values/WebViewSwitchType.h",
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
            ("src/WebView/WebView.cpp", '"Components/AppIconUIView.h"'),
            ("src/AppDelegate.cpp", '"Controller/Sidebars.h"'),
            ("src/Controller/Sidebars.cpp", '"MenuHelper.h"'),
            ("src/Helpers/ScriptingHelper.cpp", '"Values/WebViewSwitchType.h"'),
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
            ("src/WebView/WebView.cpp", '"Appearance/SizePickerUIView.h"'),
            ("src/WebView/WebView.cpp", '"Controller/Sidebars.h"'),
            ("src/Components/AppIconUIView.cpp", '"WebView/WebView.h"'),
            ("src/Keyboard/Router.cpp", '"Components/AppIconUIView.h"'),
            ("src/Values/WebViewSwitchType.cpp", '"Helpers/ScriptingHelper.h"'),
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

    def complaints(self):
        done = self.run_()
        return done.returncode, done.stdout

    def testSourcesInACircleAreRefused(self):
        self.write("src/Helpers/One.cpp", '#include "Helpers/Two.h"\n')
        self.write("src/Helpers/One.h", "#pragma once\n")
        self.write("src/Helpers/Two.h", '#include "Helpers/One.h"\n')
        code, text = self.complaints()
        self.assertEqual(code, 1)
        self.assertIn("sources in a circle: Helpers/One, Helpers/Two", text)

    def testACircleThatTheDocsNameStays(self):
        self.write("src/Helpers/One.cpp", '#include "Helpers/Two.h"\n')
        self.write("src/Helpers/One.h", "#pragma once\n")
        self.write("src/Helpers/Two.h", '#include "Helpers/One.h"\n')
        named = "### Circles that stay\n\n- `Helpers/One`, `Helpers/Two`: they hold each other.\n\n## Next\n"
        self.write("docs/architecture.md", named)
        self.assertEqual(self.complaints()[0], 0)
        # Only as it is named: a third member is news.
        self.write("src/Helpers/Two.cpp", '#include "Helpers/Three.h"\n')
        self.write("src/Helpers/Three.h", '#include "Helpers/Two.h"\n')
        self.assertIn("Helpers/One, Helpers/Three, Helpers/Two", self.complaints()[1])

    def testFoldersInACircleAreRefused(self):
        self.write("src/Helpers/One.h", '#include "UserData/Store.h"\n')
        self.write("src/UserData/Two.h", '#include "Helpers/ScriptingHelper.h"\n')
        code, text = self.complaints()
        self.assertEqual(code, 1)
        self.assertIn("folders in a circle: Helpers, UserData", text)

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
