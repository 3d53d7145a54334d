"""After many openings, switches, panels and searches the program is what it was after the first few. With
VELKIN_SOAK_MINUTES set it goes on for so long and tells how it stands: ./dev bench soak."""
import os
import time

from harness.case import VelkinTestCase
from harness.completions import sharedCompletions
from harness.soak import Measure, Soak
from harness.waiting import settle, waitFor

MINUTES = float(os.environ.get("VELKIN_SOAK_MINUTES", "0"))


class LongRun(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()
        self.home.settled(searchBarKey="sk-test", hemingwayEnabled=True)
        self.velkin = self.start()
        self.soak = Soak(self, self.velkin, self.completions)

    def searchPanel(self):
        found = [w for w in self.desktop.windows() if w.title != "Velkin" and not w.overrideRedirect]
        return found[0] if found else None

    def assertBack(self, before, memory):
        """What is let go in a later turn has some seconds to go."""
        settled = lambda now: (now.threads <= before.threads + 6 and now.descriptors <= before.descriptors + 12
                               and now.processes <= before.processes and now.memory <= before.memory + memory)
        waitFor(f"the program to be what it was ({before})", lambda: settled(Measure.of(self.velkin)), 15,
                describe=lambda: Measure.of(self.velkin))

    def testThreeHundredActionsLeaveNothingBehind(self):
        # Everything once or twice: pages, pools of threads and caches are there from then on.
        self.soak.round(openings=2, switches=1, panels=2, searches=3)
        settle(2)
        before = Measure.of(self.velkin)
        self.soak.done = 0
        self.soak.round(openings=55, switches=14, panels=30, searches=30)
        self.assertGreaterEqual(self.soak.done, 300)
        self.assertBack(before, memory=25 * 1024)
        self.assertTrue(self.velkin.running())

    def testAsLongAsItIsToldTo(self):
        if not MINUTES:
            self.skipTest("VELKIN_SOAK_MINUTES says for how long")
        self.soak.round(openings=5, switches=2, panels=5, searches=10)
        settle(2)
        before = Measure.of(self.velkin)
        print(f"\nat first: {before}", flush=True)
        end = time.monotonic() + MINUTES * 60
        told = 0
        while time.monotonic() < end:
            self.soak.round(openings=20, switches=5, panels=10, searches=10)
            if time.monotonic() - told > 60:
                told = time.monotonic()
                print(f"after {self.soak.done} actions: {Measure.of(self.velkin)}", flush=True)
        self.assertBack(before, memory=40 * 1024)
        print(f"at last, after {self.soak.done} actions: {Measure.of(self.velkin)}", flush=True)
