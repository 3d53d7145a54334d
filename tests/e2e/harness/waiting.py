"""Waiting for what a person would wait for."""
import time


def waitFor(what, condition, seconds=15, describe=None):
    """Calls condition until it gives a true value, and returns that. `what` completes "waited for"; describe() tells
    what is there instead, when the time is up. The time is a limit for a hanging program, never a measure of it."""
    end = time.monotonic() + seconds
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            instead = f"; instead: {describe()}" if describe else ""
            raise AssertionError(f"waited {seconds} s in vain for {what}{instead}")
        time.sleep(0.05)


def settle(seconds=0.7):
    """Gives the program time for what must *not* happen. There is no event to wait for when nothing is to come."""
    time.sleep(seconds)
