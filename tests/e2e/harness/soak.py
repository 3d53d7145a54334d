"""A long day in a short time: openings, switches, panels and searches without end, and what they leave behind."""
import os
import pathlib
from dataclasses import dataclass

from .completions import well
from .waiting import waitFor

APPLICATION = "com.tarnvale.Velkin"
VIEWS = ("jira", "gitlab", "bitbucket", "chatgpt")


@dataclass
class Measure:
    """Of the program's own process, and how many processes are below it."""
    memory: int  # kB that are its own
    threads: int
    descriptors: int
    processes: int

    @staticmethod
    def of(velkin):
        folder = pathlib.Path(f"/proc/{velkin.process.pid}")
        rollup = (folder / "smaps_rollup").read_text()
        private = sum(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Private_"))
        return Measure(private, len(os.listdir(folder / "task")), len(os.listdir(folder / "fd")),
                       len(velkin.descendants()))

    def __str__(self):
        return (f"{self.memory / 1024:.0f} MB, {self.threads} threads, {self.descriptors} descriptors, "
                f"{self.processes} processes below")


class Soak:
    """Does things by the desktop's bus, which is quicker than any hand; the prompts are typed."""

    def __init__(self, test, velkin, completions):
        self.test = test
        self.velkin = velkin
        self.completions = completions
        self.done = 0
        self.completions.willAnswer(well("**An answer** with `code`\n\n```\nand more\n```\n"))

    def act(self, name, argument=None):
        parameter = f"[<'{argument}'>]" if argument else "[]"
        path = "/" + APPLICATION.replace(".", "/")
        self.test.session.call(APPLICATION, path, "org.freedesktop.Application.ActivateAction", name, parameter, "{}")
        self.done += 1

    def windows(self):
        told = self.test.session.output("xdotool", "search", "--onlyvisible", "--class", "velkin", check=False)
        return len(told.split())

    def openAndClose(self):
        self.act("toggle-popover")
        waitFor("the popover", self.windows, 10)
        self.act("toggle-popover")
        waitFor("the popover to close", lambda: not self.windows(), 10)

    def switch(self):
        """With the popover open, through the views and back to chat."""
        for view in VIEWS:
            self.act("show-view", view)
        waitFor("the popover", self.windows, 10)
        self.act("toggle-popover")
        waitFor("the popover to close", lambda: not self.windows(), 10)

    def panel(self):
        self.act("toggle-search")
        waitFor("the panel", self.windows, 10)
        self.act("toggle-search")
        waitFor("the panel to close", lambda: not self.windows(), 10)

    def search(self):
        self.act("toggle-search")
        panel = waitFor("the panel", self.test.searchPanel, 10)
        waitFor("the keyboard", lambda: self.test.desktop.activeWindow() == panel.id, 10)
        number = len(self.completions.requests)
        self.test.session.output("xdotool", "type", "--delay", "2", f"prompt {number}")
        self.test.desktop.key("Return")
        self.completions.waitForRequest(number)
        waitFor("the answer", lambda: (found := self.test.searchPanel()) and found.height > 400, 10)
        self.act("toggle-search")
        waitFor("the panel to close", lambda: not self.windows(), 10)

    def round(self, openings, switches, panels, searches):
        for work, times in ((self.openAndClose, openings), (self.switch, switches), (self.panel, panels),
                            (self.search, searches)):
            for _ in range(times):
                work()
