"""count-tests reads ctest's XML and unittest's output, and never takes a crash for a success."""
import pathlib
import subprocess
import tempfile
import unittest
from xml.sax.saxutils import escape

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "count-tests"


def junit(*cases):
    body = "".join(
        f'<testcase name="t" status="{status}"><system-out>{escape(output)}</system-out></testcase>'
        for status, output in cases
    )
    return f'<?xml version="1.0" encoding="UTF-8"?>\n<testsuite>{body}</testsuite>'


class CountTests(unittest.TestCase):
    def count(self, text):
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
            file.write(text)
            file.flush()
            done = subprocess.run([TOOL, file.name, "/nowhere/at/all"], capture_output=True, text=True, check=True)
        return tuple(int(word) for word in done.stdout.split())

    def testEachGoogleTestCounts(self):
        output = "[==========] 12 tests from 3 test suites ran. (4 ms total)\n[  PASSED  ] 12 tests.\n"
        self.assertEqual(self.count(junit(("run", output))), (12, 0))

    def testFailedGoogleTestsCount(self):
        output = "[  PASSED  ] 10 tests.\n[  FAILED  ] 2 tests, listed below:\n[  FAILED  ] A.b\n[  FAILED  ] A.c\n"
        self.assertEqual(self.count(junit(("fail", output), ("run", "[  PASSED  ] 1 test.\n"))), (11, 2))

    def testAProgramThatCrashedIsAFailure(self):
        self.assertEqual(self.count(junit(("fail", "[ RUN      ] A.b\nSegmentation fault\n"))), (0, 1))

    def testAProgramThatFailsAfterItsTestsPassedIsAFailure(self):
        self.assertEqual(self.count(junit(("fail", "[  PASSED  ] 3 tests.\nLeakSanitizer\n"))), (3, 1))

    def testAnyOtherProgramCountsAsOne(self):
        self.assertEqual(self.count(junit(("run", "fine\n"), ("fail", "bad\n"))), (1, 1))

    def testUnittest(self):
        self.assertEqual(self.count("....\nRan 4 tests in 0.1s\n\nOK\n"), (4, 0))
        self.assertEqual(
            self.count("Ran 9 tests in 1s\n\nFAILED (failures=2, errors=1, skipped=1)\n"), (5, 3))

    def testAnUnittestThatNeverEndedCountsNothing(self):
        self.assertEqual(self.count("testOne ... ok\nTerminated\n"), (0, 0))

    def testNoResultFileIsAnError(self):
        done = subprocess.run([TOOL, "/nowhere/at/all"], capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
