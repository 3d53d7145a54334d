"""What ./dev says where it installs nothing."""
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("bash", "awk", "sort", "paste", "dirname", "readlink", "env", "nproc", "mkdir", "date", "cat", "sed", "grep")


class OtherSystems(unittest.TestCase):
    def build(self, manager, preset):
        """What is said by a system with this package manager, on which building does nothing."""
        with tempfile.TemporaryDirectory() as folder:
            for tool in TOOLS:
                (pathlib.Path(folder) / tool).symlink_to(shutil.which(tool))
            for tool in ("cmake", "ninja", manager):
                (pathlib.Path(folder) / tool).symlink_to("/bin/true")
            return subprocess.run([ROOT / "dev", "build", preset], env={"PATH": folder}, capture_output=True,
                                  text=True, timeout=60, check=True).stdout

    def testTheNamesAreTheSystemsOwn(self):
        self.assertRegex(self.build("dnf", "release"), r"by Fedora's names: .*\bgtk4-devel\b")
        self.assertRegex(self.build("pacman", "release"), r"by Arch Linux's names: .*\bgtk4 ")

    def testWhatHasNoNamesThereHasDebians(self):
        self.assertRegex(self.build("dnf", "fuzz"), r"by Debian's names: .*\blibclang-rt-dev\b")

    def testThePackagesOfCoreAreAmongThoseOfBuild(self):
        self.assertRegex(self.build("dnf", "release"), r"\bgcc-c\+\+")


if __name__ == "__main__":
    unittest.main()
