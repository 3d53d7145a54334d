"""What ./dev says where it installs nothing."""
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("bash", "awk", "sort", "paste", "dirname", "readlink", "env", "nproc", "mkdir", "date", "cat", "sed", "grep",
         "cksum", "rm", "touch")


class Elsewhere(unittest.TestCase):
    """In a tree of its own, where building does nothing."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name) / "tree"
        self.programs = pathlib.Path(folder.name) / "programs"
        self.programs.mkdir()
        self.tree.mkdir()
        for name in ("dev", "CMakePresets.json"):
            shutil.copy(ROOT / name, self.tree / name)
        shutil.copytree(ROOT / "packaging", self.tree / "packaging")
        for tool in TOOLS:
            (self.programs / tool).symlink_to(shutil.which(tool))
        (self.programs / "ninja").symlink_to("/bin/true")
        configure = self.programs / "cmake"
        configure.write_text("#!/bin/bash\necho configured >>configured\nmkdir -p build/$2\n"
                             "touch build/$2/build.ninja build/$2/CMakeCache.txt\n")
        configure.chmod(0o755)

    def build(self, manager, preset):
        """What is said by a system with this package manager."""
        if not (self.programs / manager).exists():
            (self.programs / manager).symlink_to("/bin/true")
        done = subprocess.run([self.tree / "dev", "build", preset], env={"PATH": str(self.programs)},
                              capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout


class BuildFolders(Elsewhere):
    def configured(self):
        return len((self.tree / "configured").read_text().splitlines())

    def testAFolderIsConfiguredOnce(self):
        for _ in range(2):
            self.build("dnf", "asan")
        self.assertEqual(self.configured(), 1)

    def testAFolderOfOtherPresetsIsMadeAnew(self):
        self.build("dnf", "asan")
        cache = self.tree / "build" / "asan" / "CMakeCache.txt"
        cache.write_text("of another compiler")
        with open(self.tree / "CMakePresets.json", "a", encoding="utf-8") as presets:
            presets.write("\n")
        self.build("dnf", "asan")
        self.assertEqual(self.configured(), 2)
        self.assertEqual(cache.read_text(), "")


class OtherSystems(Elsewhere):
    def testTheNamesAreTheSystemsOwn(self):
        self.assertRegex(self.build("dnf", "release"), r"by Fedora's names: .*\bgtk4-devel\b")
        self.assertRegex(self.build("pacman", "release"), r"by Arch Linux's names: .*\bgtk4 ")

    def testWhatHasNoNamesThereHasDebians(self):
        self.assertRegex(self.build("dnf", "fuzz"), r"by Debian's names: .*\blibclang-rt-dev\b")

    def testThePackagesOfCoreAreAmongThoseOfBuild(self):
        self.assertRegex(self.build("dnf", "release"), r"\bgcc-c\+\+")


if __name__ == "__main__":
    unittest.main()
