"""Where things are. Everything that the tests leave behind goes below build/e2e."""
import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[3]
HARNESS = ROOT / "tests" / "e2e" / "harness"
SESSION = ROOT / "tests" / "session"
ARTEFACTS = ROOT / "build" / "e2e" / "artefacts"

# The variable is for trying the tests on another build of the same program, a sanitizer's for example.
PROGRAM = pathlib.Path(os.environ.get("VELKIN_E2E_PROGRAM", ROOT / "build" / "release" / "bin" / "velkin-e2e"))
