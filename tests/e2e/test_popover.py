"""Opening and closing the popover by real clicks, and the page in it."""
from harness import VelkinTestCase, waitFor
from harness.colours import contrast
from harness.session import Session
from harness.waiting import settle

# The desktop browser that the chat services are told they serve.
USER_AGENT = ("Mozilla/5.0 (Macintosh; Intel Mac OS X 10_11_3) AppleWebKit/605.1.15 (KHTML, like Gecko) "
              "Version/14.1.1 Safari/605.1.15")


class Placed:
    """What holds wherever the panel is."""

    def testLeftClickOpensInsideTheWorkArea(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        self.chat.page()
        left, top, right, bottom = self.desktop.workArea()
        self.assertLess(bottom - top, self.session.height, "the panel's strut was not found")
        self.assertGreaterEqual(window.x, left)
        self.assertGreaterEqual(window.y, top)
        self.assertLessEqual(window.right, right)
        self.assertLessEqual(window.bottom, bottom)
        # At the panel's edge, and as near to the icon as the screen allows.
        self.assertEqual(window.y if self.panel == "top" else window.bottom, top if self.panel == "top" else bottom)
        self.assertEqual(window.right, right)
        self.assertEqual((window.width, window.height), (600, 600))

    def testReopensAtTheSamePlace(self):
        velkin = self.startOnChat()
        first = self.openPopover(velkin)
        for _ in range(3):
            velkin.clickIcon(self.desktop)
            self.waitForClosed()
            again = self.openPopover(velkin)
            self.assertEqual((again.x, again.y, again.width, again.height),
                             (first.x, first.y, first.width, first.height))


class PanelAtTheTop(Placed, VelkinTestCase):
    panel = "top"


class PanelAtTheBottom(Placed, VelkinTestCase):
    panel = "bottom"


class AtTwiceTheScale(VelkinTestCase):
    """The panel counts in points, and says so of clicks; X counts in pixels."""

    screen = "2560x1800"

    @classmethod
    def makeSession(cls):
        return Session(cls.panel, cls.screen, environment={"GDK_SCALE": "2"})

    def testItStandsAtTheIconWithTwiceThePixels(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        _, top, right, _ = self.desktop.workArea()
        self.assertEqual((window.width, window.height), (1200, 1200))
        self.assertEqual((window.right, window.y), (right, top))
        page = self.chat.page()
        self.assertEqual(page.ask("[innerWidth, devicePixelRatio]"), [600, 2])


class Popover(VelkinTestCase):
    def testDoesNotOpenByItself(self):
        self.startOnChat()
        settle(1.5)
        self.assertIsNone(self.popover())

    def testTheServerSeesOneLoad(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        page = self.chat.page()
        settle(1.5)
        self.assertEqual(len(self.chat.loads()), 1)
        for other in self.services.all[1:]:
            self.assertEqual(other.loads(), [], f"{other.name} was loaded and is not on show")
        self.assertEqual(page.ask("document.title"), "chatgpt")

    def testThePageReportsItsSizeZoomAndUserAgent(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        width = page.ask("innerWidth")
        height = page.ask("innerHeight")
        # Something of the window may belong to the program's own controls beside the page.
        self.assertLessEqual(width, window.width)
        self.assertGreater(width, window.width - 120)
        self.assertLessEqual(height, window.height)
        self.assertGreater(height, window.height - 120)
        self.assertEqual(page.ask("navigator.userAgent"), USER_AGENT)
        self.assertEqual(self.chat.loads()[0].headers["User-Agent"], USER_AGENT)
        self.assertAlmostEqual(self.pageOrigin(page, window)[2], 1.0, places=2)
        self.assertEqual(page.ask("document.visibilityState"), "visible")
        self.assertGreater(self.desktop.coloursIn(window), 10, "the popover is on show and empty")

    def testTheStoredZoomApplies(self):
        velkin = self.startOnChat(zoomLevel=1.2)
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.assertAlmostEqual(self.pageOrigin(page, window)[2], 1.2, places=1)
        self.assertLess(page.ask("innerWidth"), 600 / 1.2 + 2)

    def testTheStoredSizeApplies(self):
        velkin = self.startOnChat(viewWidth=980.0, viewHeight=480.0)
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (980, 480))

    def testAFineEdgeStandsAroundItOnEveryBackground(self):
        for scheme in ("prefer-light", "prefer-dark"):
            self.home.settled()
            velkin = self.start(environment={"ADW_DEBUG_COLOR_SCHEME": scheme})
            for background in ((0, 0, 0), (255, 255, 255), (128, 128, 128)):
                with self.subTest(scheme=scheme, background=background):
                    self.session.output("xsetroot", "-solid", "#%02x%02x%02x" % background)
                    window = self.popover() or self.openPopover(velkin)
                    page = self.chat.page()
                    # A page may have the very colour of what is behind the window.
                    page.ask("document.head?.remove(); document.body.innerHTML = '';"
                             f"document.documentElement.style.background = 'rgb{background}'; 1")
                    inside = window.x + 20, window.bottom - 20
                    waitFor("the page's colour", lambda: self.desktop.colourAt(*inside) == background, 10,
                            lambda: self.desktop.colourAt(*inside))
                    settle(0.5)
                    self.desktop.picture(self.artefact(f"{scheme}-{background[0]}.png"))
                    for x, y, stepX, stepY in ((window.x, window.bottom - 60, -1, 0),
                                               (window.right - 1, window.bottom - 60, 1, 0),
                                               (window.centre[0], window.bottom - 1, 0, 1)):
                        edge = self.desktop.colourAt(x, y)
                        for what, behind in (("outside", (x + stepX, y + stepY)), ("inside", (x - stepX, y - stepY))):
                            self.assertGreater(contrast(edge, self.desktop.colourAt(*behind)), 1.15,
                                               f"{edge} and {what} {self.desktop.colourAt(*behind)}")
            velkin.end()
            waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def testAClickOnTheBareDesktopCloses(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        settle()
        self.desktop.click(100, 700)
        self.waitForClosed()

    def testAClickOnAnotherWindowCloses(self):
        velkin = self.startOnChat()
        other = self.desktop.openOtherWindow(100, 600)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        target = waitFor("the other window", lambda: self.desktop.windows(title="Event Tester"), 10,
                         lambda: [str(w) for w in self.desktop.windows(".*")])[0]
        self.openPopover(velkin)
        settle()
        self.desktop.click(*target.centre)
        self.waitForClosed()

    def testAClickInsideKeepsItOpen(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.clickInPage(page, window, "header")
        waitFor("the page to see the click", lambda: page.last("click"), 10)
        settle(1)
        self.assertIsNotNone(self.popover())

    def testStickyKeepsItOpen(self):
        velkin = self.startOnChat(stickyMenu=True)
        self.openPopover(velkin)
        settle()
        self.desktop.click(100, 700)
        settle(1.5)
        self.assertIsNotNone(self.popover(), "a click outside closed a sticky popover")
        velkin.clickIcon(self.desktop)
        self.waitForClosed()

    def testASecondClickOnTheIconCloses(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        settle(1)
        self.assertIsNone(self.popover(), "it came back by itself")

    def testReopeningShowsTheSamePageWithoutALoad(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        page = self.chat.page()
        page.ask("document.getElementById('text').value = 'half a sentence'")
        page.ask("scrollTo(0, 400)")
        self.desktop.click(100, 700)
        self.waitForClosed()
        self.openPopover(velkin)
        self.assertEqual(page.ask("document.getElementById('text').value"), "half a sentence")
        self.assertEqual(page.ask("scrollY"), 400)
        waitFor("the page to be on show again", lambda: page.ask("document.visibilityState") == "visible", 10)
        self.assertEqual(len(self.chat.loads()), 1)

    def testTypedTextArrivesInThePage(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        waitFor("the text area to have the focus", lambda: page.ask("document.activeElement.id") == "text", 10)
        self.desktop.type("Hello there 42")
        waitFor("the text", lambda: page.ask("document.getElementById('text').value") == "Hello there 42", 10,
                lambda: page.ask("document.getElementById('text').value"))
        downs = [key["key"] for key in page.all("key") if key["type"] == "keydown" and len(key["key"]) == 1]
        self.assertEqual("".join(downs), "Hello there 42", "a key arrived twice, or not at all")

    def testAnIconClickedManyTimesEndsInTheRightState(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.chat.page()
        for _ in range(8):
            velkin.clickIcon(self.desktop)
            settle(0.4)
        self.assertIsNotNone(self.popover(), "an even number of clicks leaves it as it was")
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.assertEqual(len(self.chat.loads()), 1)
