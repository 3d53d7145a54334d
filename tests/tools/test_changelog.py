"""The changelog's forms."""
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOL = ROOT / "tools" / "changelog"
METAINFO = "data/com.tarnvale.Velkin.metainfo.xml"

CHANGELOG = """# Changelog

Words before all.

## [Unreleased]

### Added

- Not yet.

## [1.2.0] - 2026-03-05

A word of [summary](https://example.org/) & more.

### Added

- A `first` thing that goes
  on in a second line.

### Fixed

- Another <thing>.

## [1.1.0] - 2025-12-31

### Fixed

- Old.
"""


class Changelog(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / "data").mkdir()
        (self.root / "packaging" / "arch").mkdir(parents=True)
        self.write("packaging/arch/PKGBUILD", "pkgname=velkin\npkgver=1.0.0\n")
        self.write("CMakeLists.txt", "project(Velkin VERSION 1.2.0 LANGUAGES CXX)\nset(VELKIN_BUILD_NUMBER 45)\n")
        self.write("CHANGELOG.md", CHANGELOG)
        self.write(METAINFO, "<component>\n  <releases>\n    <release/>\n  </releases>\n</component>\n")

    def write(self, name, text):
        (self.root / name).write_text(text, encoding="utf-8")

    def run_(self, command, code=0):
        done = subprocess.run([TOOL, command, "--root", self.root], capture_output=True, text=True)
        self.assertEqual(done.returncode, code, done.stdout + done.stderr)
        return done.stdout + done.stderr

    def testTheAppStreamDataGetsTheReleases(self):
        self.assertIn("not in step", self.run_("check", 1))
        self.run_("write")
        text = (self.root / METAINFO).read_text()
        self.assertIn('<release version="1.2.0" date="2026-03-05" type="stable">', text)
        self.assertIn("<p>A word of summary &amp; more.</p>", text)
        self.assertIn("<li>A first thing that goes on in a second line.</li>", text)
        self.assertIn("<li>Another &lt;thing&gt;.</li>", text)
        self.assertIn('version="1.1.0"', text)
        self.assertNotIn("Not yet", text)
        self.assertEqual((self.root / "packaging/arch/PKGBUILD").read_text(), "pkgname=velkin\npkgver=1.2.0\n")
        self.run_("check")

    def testTheDebianChangelogIsOneThatDpkgReads(self):
        text = self.run_("debian")
        self.assertTrue(text.startswith("velkin (1.2.0+45) unstable; urgency=medium\n"), text)
        self.assertIn("  * A first thing that goes on in a second line.\n", text)
        self.assertIn("  Thu, 05 Mar 2026 12:00:00 +0000\n", text)
        self.assertIn("velkin (1.1.0) unstable", text)
        self.assertTrue(all(len(line) <= 80 for line in text.splitlines() if not line.startswith(" --")), text)

    def testTheVersionHasOnePlace(self):
        self.assertEqual(self.run_("version"), "1.2.0+45\n")
        self.run_("write")
        self.write("CMakeLists.txt", "project(Velkin VERSION 1.3.0)\nset(VELKIN_BUILD_NUMBER 46)\n")
        self.assertIn("1.3.0", self.run_("check", 1))

    def testWhatIsNoHeadingIsSaid(self):
        for heading in ("## 1.2.0", "## [1.2.0]", "## [1.2.0] - 2026-13-05"):
            with self.subTest(heading=heading):
                self.write("CHANGELOG.md", f"# Changelog\n\n{heading}\n")
                self.assertIn("changelog: ", self.run_("debian", 1))

    def testTheNewestComesFirst(self):
        self.write("CHANGELOG.md", CHANGELOG.replace("2025-12-31", "2026-12-31"))
        self.run_("write")
        self.assertIn("newest", self.run_("check", 1))

    def testOursIsInStep(self):
        done = subprocess.run([TOOL, "check"], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
