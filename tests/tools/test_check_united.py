"""check-united lets files pass that can be compiled together, and refuses two things of one name in a folder."""
import json
import pathlib
import subprocess
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check-united"


class CheckUnited(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.entries = []
        (self.root / "src").mkdir()
        (self.root / "tests").mkdir()
        (self.root / "src" / "CMakeLists.txt").write_text("add_library(house a.cpp)\nvelkin_unite(house 8)\n")

    def write(self, path, text, target="house", options=""):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        command = f"/usr/bin/c++ {options} -std=c++20 -o CMakeFiles/{target}.dir/{path}.o -c {file}"
        self.entries.append({"directory": str(self.root), "command": command, "file": str(file)})

    def run_(self):
        (self.root / "compile_commands.json").write_text(json.dumps(self.entries))
        return subprocess.run([TOOL, self.root, "--root", self.root], capture_output=True, text=True)

    def testNamesOfTheirOwnPass(self):
        self.write("src/room/a.cpp", "namespace { int one() { return 1; } }\nint a() { return one(); }\n")
        self.write("src/room/b.cpp", "namespace { int two() { return 2; } }\nint b() { return two(); }\n")
        run = self.run_()
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("2 files in 1 folders", run.stdout)

    def testOneNameForTwoThingsIsRefused(self):
        self.write("src/room/a.cpp", "namespace { int same() { return 1; } }\nint a() { return same(); }\n")
        self.write("src/room/b.cpp", "namespace { int same() { return 2; } }\nint b() { return same(); }\n")
        run = self.run_()
        self.assertEqual(run.returncode, 1)
        self.assertIn("src/room: its files can't be compiled together", run.stderr)
        self.assertIn("redefinition of 'same'", run.stderr)

    def testTwoFoldersDontMeet(self):
        for room in ("kitchen", "cellar"):
            self.write(f"src/{room}/a.cpp", "namespace { int same() { return 1; } }\nint a() { return same(); }\n")
            self.write(f"src/{room}/b.cpp", "int b() { return 2; }\n")
        self.assertEqual(self.run_().returncode, 0)

    def testFilesOfTwoTargetsOrOfOtherOptionsDontMeet(self):
        self.write("src/room/a.cpp", "int here() { return 1; }\n")
        self.write("src/room/b.cpp", "int there() { return 1; }\n")
        self.write("src/room/c.cpp", "int here() { return 3; }\n", target="other")
        self.write("src/room/d.cpp", "int here() { return 4; }\n", options="-DOTHER=1")
        self.assertEqual(self.run_().returncode, 0)

    def testNothingToLookAtIsAFailure(self):
        self.write("src/room/a.cpp", "int a() { return 1; }\n", target="other")
        run = self.run_()
        self.assertEqual(run.returncode, 1)
        self.assertIn("has no files", run.stderr)


if __name__ == "__main__":
    unittest.main()
