"""The tests in parts that run side by side, each in a process of its own: most of a test is waiting for what a person
would wait for. Each part has addresses of its own for the services and, where the system allows it, a network of its
own, so that a part knows nothing of the others, nor of other runs."""
import concurrent.futures
import json
import os
import pathlib
import queue
import subprocess
import sys
import tempfile
import threading
import time
import unittest

from .paths import SESSION

# Each part has a desktop to start, some two seconds.
TESTS_IN_A_PART = 6


def flat(suite):
    for item in suite:
        if isinstance(item, unittest.TestSuite):
            yield from flat(item)
        else:
            yield item


def split(suite):
    """Lists of test ids, each of one class, the longest first. A class whose few tests take minutes says so:
    `takesMinutes = True`."""
    classes = {}
    for test in flat(suite):
        classes.setdefault(type(test), []).append(test.id())
    parts = []
    for kind, ids in classes.items():
        count = -(-len(ids) // TESTS_IN_A_PART)
        parts += [(getattr(kind, "takesMinutes", False), ids[number::count]) for number in range(count)]
    return [ids for _, ids in sorted(parts, key=lambda part: (part[0], len(part[1])), reverse=True)]


def networksArePossible():
    return subprocess.run([SESSION / "own-network", "true"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


def defaultJobs():
    """More than twice as many as there are processors: a test waits for most of its time."""
    return int(os.environ.get("VELKIN_E2E_JOBS", 2 * len(os.sched_getaffinity(0)) + 1))


class Outcome:
    """What the parts came to; the numbers as unittest counts them."""

    WORDS = ("failures", "errors", "skipped", "expectedFailures", "unexpectedSuccesses")

    def __init__(self):
        self.run = 0
        self.numbers = dict.fromkeys(self.WORDS, 0)

    def add(self, told):
        self.run += told["run"]
        for word in self.WORDS:
            self.numbers[word] += told[word]

    def wasSuccessful(self):
        bad = ("failures", "errors", "unexpectedSuccesses")
        return self.run > 0 and not any(self.numbers[word] for word in bad)

    def __str__(self):
        names = {"expectedFailures": "expected failures", "unexpectedSuccesses": "unexpected successes"}
        found = ", ".join(f"{names.get(word, word)}={count}" for word, count in self.numbers.items() if count)
        return ("OK" if self.wasSuccessful() else "FAILED") + (f" ({found})" if found else "")


def writeOutcome(result, path):
    told = {word: len(getattr(result, word)) for word in Outcome.WORDS}
    pathlib.Path(path).write_text(json.dumps(dict(told, run=result.testsRun)))


def runPart(script, ids, before, number):
    """(what it printed, its numbers). A part that didn't come to its end failed with all its tests."""
    with tempfile.NamedTemporaryFile(suffix=".json") as file:
        done = subprocess.run([*before, sys.executable, script, "--part", file.name, *ids],
                              env=dict(os.environ, VELKIN_LOOPBACK=str(number)),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace", check=False)
        text = pathlib.Path(file.name).read_text()
    if text:
        return done.stdout, json.loads(text)
    printed = f"{done.stdout}\nERROR: a part ended with exit code {done.returncode}: {' '.join(ids)}\n"
    return printed, dict(dict.fromkeys(Outcome.WORDS, 0), run=len(ids), errors=len(ids))


def runSideBySide(script, parts, jobs):
    """Prints each part when it has ended, and at the end what unittest prints; returns the Outcome."""
    started = time.monotonic()
    outcome = Outcome()
    mutex = threading.Lock()
    before = [SESSION / "own-network"] if networksArePossible() else []
    # Of the addresses. A run by itself has 0.
    numbers = queue.SimpleQueue()
    for number in range(1, jobs + 1):
        numbers.put(number)

    def runOne(ids):
        number = numbers.get()
        printed, told = runPart(script, ids, before, number)
        numbers.put(number)
        with mutex:
            outcome.add(told)
            print(printed, end="", flush=True)

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for future in [pool.submit(runOne, ids) for ids in parts]:
            future.result()
    print("-" * 70)
    print(f"Ran {outcome.run} test{'' if outcome.run == 1 else 's'} in {time.monotonic() - started:.3f}s\n\n{outcome}")
    return outcome
