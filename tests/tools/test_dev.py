"""What ./dev says where it installs nothing, what it builds anew, and what it needn't test again."""
import os
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


class Standing(unittest.TestCase):
    """A stage whose files are what they were when it passed isn't run again by ./dev test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        for name in ("tools", "data", "tests/session", "inputs", "results"):
            (self.tree / name).mkdir(parents=True)
        for name in ("dev", "tools/test-stages"):
            shutil.copy(ROOT / name, self.tree / name)
        counter = self.tree / "tools" / "count-tests"
        counter.write_text('#!/bin/sh\ncat "$1" 2>/dev/null\n')
        counter.chmod(0o755)
        self.program = self.tree / "inputs" / "program"
        self.program.write_text("one")

    def stage(self, passes=True, named=False, **environment):
        """The line that the summary has for a stage that has the folder "inputs" for its files."""
        script = f"""
            results=results; say() {{ :; }}
            . tools/test-stages
            mayStand={"" if named else "yes"}
            tests() {{
              ! stands some inputs || return 0
              echo {"3 0" if passes else "2 1"} >results/some.xml
              {"keep some" if passes else "return 1"}
            }}
            stage some tests
            echo "${{summary[0]}}"
        """
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=self.tree, capture_output=True, text=True,
                              timeout=60, check=False, env=dict(os.environ, **environment))
        self.assertEqual(done.returncode, 0, done.stderr)
        return " ".join(done.stdout.split())

    def testWhatPassedStands(self):
        self.assertRegex(self.stage(), r"^some 3 passed 0 failed \d+ s$")
        self.assertRegex(self.stage(), r"^some 0 passed 0 failed \d+ s unchanged since it passed: some$")

    def testWhatIsNamedRunsInAnyCase(self):
        self.stage()
        self.assertIn("3 passed", self.stage(named=True))
        self.assertIn("unchanged", self.stage())

    def testAnyChangeOfItsFilesRunsIt(self):
        for change in (lambda: self.program.write_text("two"),
                       lambda: self.program.rename(self.program.with_name("other")),
                       lambda: (self.tree / "inputs" / "more").write_text(""),
                       lambda: (self.tree / "data" / "icon").write_text(""),
                       lambda: (self.tree / "tests" / "session" / "panel").write_text("")):
            self.stage()
            self.assertIn("unchanged", self.stage())
            change()
            self.assertIn("3 passed", self.stage())

    def testWhatTheTestsAreToldCounts(self):
        self.stage()
        self.assertIn("3 passed", self.stage(VELKIN_E2E_PROGRAM="another"))

    def testWhatFailedRunsAgain(self):
        self.assertRegex(self.stage(passes=False), r"^some 2 passed 1 failed")
        self.assertRegex(self.stage(passes=False), r"^some 2 passed 1 failed")

    def testAFailureEndsWhatStood(self):
        self.stage()
        self.stage(passes=False, named=True)
        self.assertIn("3 passed", self.stage())

    def testAStageThatRunsNothingFails(self):
        script = "results=results; say() { :; }; . tools/test-stages; stage some true; echo \"$failed\""
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=self.tree, capture_output=True, text=True,
                              timeout=60, check=False)
        self.assertEqual(done.stdout, "1\n")


if __name__ == "__main__":
    unittest.main()
