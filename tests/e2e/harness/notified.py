"""What the program tells the user by the desktop."""
import json
import subprocess
import threading

from .paths import HARNESS
from .waiting import waitFor

# The one that has the desktop's bindings.
PYTHON = "/usr/bin/python3"


class Notices:
    """The desktop's notices and its file manager, as far as the program asks them for something."""

    def __init__(self, session):
        self._process = subprocess.Popen([PYTHON, HARNESS / "notices.py"], env=session.environment,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._told = []
        threading.Thread(target=self._read, daemon=True).start()
        waitFor("the desktop's notices", lambda: self.told("ready"), 15)

    def _read(self):
        for line in self._process.stdout:
            self._told.append(json.loads(line))

    def told(self, kind):
        return [each for each in list(self._told) if each["kind"] == kind]

    def click(self, id):
        self._process.stdin.write(f"click {id}\n")
        self._process.stdin.flush()

    def end(self):
        self._process.stdin.close()
        self._process.wait(10)
        self._process.stdout.close()
