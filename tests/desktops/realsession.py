"""A real desktop with the harness's hands and eyes: where the icon is, is told by a picture of the screen."""
import subprocess

import numpy

from harness.colours import contrast
from harness.paths import ROOT
from harness.session import Session
from harness.wayland import WaylandPictures

# All kinds of it have the same outline.
PICTURE = ROOT / "data" / "icons" / "velkin-diamondgear-symbolic.svg"
SIZES = range(14, 49)
# Less is another picture; a panel's own scaling and filtering leave more.
LIKENESS = 0.8


class RealSession(Session):
    def __init__(self, name, screen="1280x900"):
        super().__init__("desktop's own", screen, name)
        self.name = name
        self._templates = {}

    def iconPosition(self, number=0):
        found = self.findIcon()
        if not found:
            raise AssertionError("the icon is nowhere in a panel")
        return found.x + found.size // 2, found.y + found.size // 2

    def iconIsDrawn(self, number=0):
        return self.findIcon() is not None

    def pixels(self):
        """The screen, as height x width x (red, green, blue), 0 to 255."""
        command = ["import", "-window", "root", "-depth", "8", "rgb:-"]
        raw = subprocess.run(command, env=self.environmentOf(command), stdin=subprocess.DEVNULL,
                             capture_output=True, check=True, timeout=60).stdout
        return numpy.frombuffer(raw, numpy.uint8).reshape(self.height, self.width, 3)

    def findIcon(self):
        """Where our icon is drawn at the upper or lower edge of the screen, or None."""
        pixels = self.pixels()
        best = None
        for top in (0, self.height - 64):
            strip = pixels[top:top + 64].astype(float).mean(axis=2)
            for size in SIZES:
                likeness, x, y = alike(strip, self._template(size))
                if likeness > LIKENESS and (best is None or likeness > best.likeness):
                    best = Icon(x, y + top, likeness, pixels, self._template(size))
        return best

    def _template(self, size):
        """How much of each pixel the icon covers, 0 to 1."""
        if size not in self._templates:
            raw = subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), PICTURE],
                                 capture_output=True, check=True).stdout
            alpha = subprocess.run(["convert", "png:-", "-alpha", "extract", "-depth", "8", "gray:-"], input=raw,
                                   capture_output=True, check=True).stdout
            self._templates[size] = numpy.frombuffer(alpha, numpy.uint8).reshape(size, size) / 255
        return self._templates[size]

    def restartPanel(self, between):
        """Ends the panel as a crash would, does `between`, and comes back when the tray takes icons again."""
        command = [ROOT / "tests" / "session" / "real-desktop", "panel", self.name]
        for step in ("stop", "start"):
            # Not captured: the panel lives on and would hold the pipe open.
            subprocess.run([*command, step], env=self.environment, check=True, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, timeout=90)
            if step == "stop":
                between()


class PointerInPictures:
    """The pictures hold the pointer, which hides the icon that it is on: then the icon is where it was seen last."""

    _seen = None

    def iconPosition(self, number=0):
        if self.findIcon() or not self._seen:
            self._seen = super().iconPosition(number)
        return self._seen


class NestedSession(PointerInPictures, RealSession):
    """A compositor of Wayland in a window that takes the whole of a virtual display. Hands and eyes are at that display;
    windows are looked for in the X server within, which is where the program's are."""

    def environmentOf(self, command):
        if command[0] == "import" or (command[0] == "xdotool" and command[1] not in ("search", "getactivewindow")):
            outside = dict(self.environment, DISPLAY=self.environment["VELKIN_SESSION_AROUND"])
            outside.pop("XAUTHORITY", None)
            return outside
        return super().environmentOf(command)


class RealWaylandSession(WaylandPictures, PointerInPictures, RealSession):
    def pixels(self):
        raw = subprocess.run(["grim", "-t", "ppm", "-"], env=self.environment, stdin=subprocess.DEVNULL,
                             capture_output=True, check=True, timeout=60).stdout
        return numpy.frombuffer(raw[-3 * self.width * self.height:], numpy.uint8).reshape(self.height, self.width, 3)


class Icon:
    def __init__(self, x, y, likeness, pixels, template):
        self.x, self.y, self.size, self.likeness = x, y, template.shape[0], likeness
        self._pixels = pixels[y:y + self.size, x:x + self.size].astype(float)
        self._template = template

    def contrast(self):
        """How the icon stands out from what is behind it, as the rules for accessible pictures count it (1 to 21)."""
        drawn = numpy.median(self._pixels[self._template > 0.9], axis=0)
        behind = numpy.median(self._pixels[self._template < 0.05], axis=0)
        return contrast(drawn, behind)


def alike(strip, template):
    """(likeness, x, y) of the place in the strip that is most like the template, light on dark or dark on light: the
    greatest correlation, 0 to 1, of all places at which something is drawn."""
    size = template.shape[0]
    zeroMean = template - template.mean()
    shape = (strip.shape[0] + size - 1, strip.shape[1] + size - 1)
    shapeFast = [1 << (length - 1).bit_length() for length in shape]
    product = numpy.fft.irfft2(numpy.fft.rfft2(strip, shapeFast) * numpy.fft.rfft2(zeroMean[::-1, ::-1], shapeFast),
                               shapeFast)[size - 1:strip.shape[0], size - 1:strip.shape[1]]

    def sums(values):
        total = numpy.pad(values.cumsum(axis=0).cumsum(axis=1), ((1, 0), (1, 0)))
        return total[size:, size:] - total[:-size, size:] - total[size:, :-size] + total[:-size, :-size]

    variance = sums(strip ** 2) - sums(strip) ** 2 / size ** 2
    # Where the strip is of one colour there is nothing to compare.
    isDrawn = variance > size ** 2
    scale = numpy.sqrt(numpy.where(isDrawn, variance, 1) * (zeroMean ** 2).sum())
    likeness = numpy.where(isDrawn, abs(product) / scale, 0)
    y, x = numpy.unravel_index(likeness.argmax(), likeness.shape)
    return float(likeness[y, x]), int(x), int(y)
