"""The virtual desktop itself: what it gives, and that it leaves nothing behind."""
import os
import pathlib
import signal
import subprocess
import unittest

from harness.paths import SESSION
from harness.waiting import waitFor


def processesOf(folder):
    """The processes that carry the session's mark."""
    mark = f"VELKIN_SESSION={folder}".encode()
    found = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if mark in (process / "environ").read_bytes().split(b"\0"):
                found.append(process.name)
        except OSError:
            pass
    return found


def hearInterrupts():
    """A shell's job in the background ignores them, and so does all that it starts."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


class TraySession(unittest.TestCase):
    def start(self, *command, options=()):
        process = subprocess.Popen([SESSION / "tray-session", *options, "--", *command], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, text=True, start_new_session=True,
                                   preexec_fn=hearInterrupts)
        self.addCleanup(process.stdout.close)
        # What a failed test has left would hold up whoever waits for the end of its output.
        self.addCleanup(process.wait, 60)
        self.addCleanup(process.terminate)
        return process

    def testEndsWithTheCommandsExitCode(self):
        self.assertEqual(self.start("sh", "-c", "exit 7").wait(60), 7)

    def testHasAHomeOfItsOwn(self):
        process = self.start("sh", "-c", "echo $HOME")
        home = process.stdout.readline().strip()
        process.wait(60)
        self.assertNotEqual(home, os.environ.get("HOME"))
        self.assertFalse(pathlib.Path(home).exists(), "the private home was left behind")

    def testLeavesNoProcessBehind(self):
        for number in (None, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                # A command that starts something of its own, and does not wait for it.
                wait = "sleep 1000" if number else ""
                process = self.start("sh", "-c", f"sleep 1000 & echo $VELKIN_SESSION; {wait}")
                folder = process.stdout.readline().strip()
                self.assertTrue(folder)
                if number:
                    self.assertTrue(processesOf(folder))
                    process.send_signal(number)
                process.wait(60)
                waitFor("the session's processes to end", lambda: not processesOf(folder), 10,
                        lambda: processesOf(folder))
                self.assertFalse(pathlib.Path(folder).exists())

    def testAWaylandSessionLeavesNothingBehindEither(self):
        process = self.start("sh", "-c", "echo $VELKIN_SESSION; sleep 1000",
                             options=("--desktop", "xwayland"))
        folder = process.stdout.readline().strip()
        self.assertTrue(processesOf(folder))
        process.terminate()
        process.wait(60)
        waitFor("the session's processes to end", lambda: not processesOf(folder), 10, lambda: processesOf(folder))
        self.assertFalse(pathlib.Path(folder).exists())

    def testASecondSessionDoesNotDisturbTheFirst(self):
        first = self.start("sh", "-c", "echo $VELKIN_SESSION; sleep 1000")
        folder = first.stdout.readline().strip()
        self.assertEqual(self.start("true", options=("--panel", "none")).wait(60), 0)
        self.assertIsNone(first.poll())
        self.assertTrue(processesOf(folder))
        first.terminate()
        first.wait(60)


if __name__ == "__main__":
    unittest.main()
