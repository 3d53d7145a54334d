"""Loopback servers in the place of the six outside services, each on its own address as the real ones are.

A page that a server gives reports what it sees (POST /report) and answers questions (long poll GET /ask, POST
/answer), so that a test learns from the page itself what is on show.
"""
import base64
import errno
import http.server
import itertools
import json
import os
import queue
import threading
import time
import urllib.parse
import uuid
from dataclasses import dataclass, field

from .waiting import waitFor

PORT = 8471


def host(number):
    """The address of one of the services: those of a run that goes on beside others are its own."""
    return f"127.83.{os.environ.get('VELKIN_LOOPBACK', '0')}.{number}"


def bigPageBytes():
    """As much as a busy machine still saves within its minute; VELKIN_E2E_BIG_PAGE says how many megabytes instead."""
    return int(os.environ.get("VELKIN_E2E_BIG_PAGE", "10")) << 20


@dataclass(frozen=True)
class Request:
    method: str
    path: str  # without the query
    headers: dict
    cookies: dict
    query: dict = field(default_factory=dict)


class Page:
    """One load of a page, alive as long as the page is: it is asked by the load's own id."""

    def __init__(self, service, id, path):
        self.service = service
        self.id = id
        self.path = path
        self.reports = []
        self.questions = queue.Queue()
        self._answers = {}

    def ask(self, expression, seconds=15):
        """The value of a JavaScript expression in the page; a promise is waited for."""
        number = self.post(expression)
        told = waitFor(f"the answer of {self} to: {expression}", lambda: self._answers.pop(number, None), seconds,
                       describe=lambda: f"its last report is {self.last()}")
        if "error" in told:
            raise AssertionError(f"{self} failed at {expression}: {told['error']}")
        return told["value"]

    def post(self, expression):
        """Hands the page a question and returns its number, without waiting."""
        number = next(self.service.numbers)
        self.questions.put({"number": number, "expression": expression})
        return number

    def answer(self, told):
        self._answers[told["number"]] = told

    def answered(self, number):
        return number in self._answers

    def last(self, kind=None):
        """The newest report, or the newest of a kind ("load", "resize", "key", "click", "message"), or None."""
        for report in reversed(list(self.reports)):
            if kind is None or report["kind"] == kind:
                return report
        return None

    def all(self, kind):
        return [report for report in list(self.reports) if report["kind"] == kind]

    def __str__(self):
        return f"the page {self.service.name}{self.path} ({self.id[:8]})"


class Service:
    def __init__(self, number, name, path, colour):
        self.address = host(number)
        self.name = name
        self.home = path
        self.colour = colour
        self.numbers = itertools.count(1)
        self._lock = threading.Lock()
        self.clear()
        self._server = None

    @property
    def url(self):
        return f"http://{self.address}:{PORT}{self.home}"

    def urlOf(self, path):
        return f"http://{self.address}:{PORT}{path}"

    def clear(self):
        """Forgets requests and pages: a page from before gets no more questions."""
        with self._lock:
            self.requests = []
            self.pages = {}
            self.isPictureGone = False
            self.mayEnd = threading.Event()

    def record(self, request):
        with self._lock:
            self.requests.append(request)

    def newPage(self, path):
        page = Page(self, uuid.uuid4().hex, path)
        with self._lock:
            self.pages[page.id] = page
        return page

    def loads(self, path=None):
        """The requests for a document, in order: of the service's first page unless told otherwise."""
        with self._lock:
            return [r for r in self.requests if r.method == "GET" and r.path == (path or self.home)]

    def pagesOf(self, path):
        """Those loaded from the path that have reported themselves, the oldest first."""
        with self._lock:
            return [p for p in self.pages.values() if p.path == path and p.last("load")]

    def page(self, path=None, number=None, seconds=20):
        """The newest page loaded from the path that has reported itself; or, with a number, that one (0: the first)."""
        path = path or self.home

        def find():
            found = self.pagesOf(path)
            if number is None:
                return found[-1] if found else None
            return found[number] if number < len(found) else None

        what = "a page" if number is None else f"page number {number}"
        return waitFor(f"{what} of {self.name} to load {path}", find, seconds,
                       describe=lambda: f"the server saw {self.seen()}")

    def seen(self):
        with self._lock:
            told = itertools.groupby(f"{r.method} {r.path}" for r in self.requests if r.path != "/ask")
        counted = [(what, len(list(times))) for what, times in told]
        return [what if times == 1 else f"{what} ({times} times)" for what, times in counted] or "nothing"

    def start(self):
        self._server = bind(self)
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.1}, daemon=True).start()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()


class Services:
    def __init__(self):
        # Colours that no theme has: a picture shows which page is on show.
        self.all = [
            Service(1, "chatgpt", "/chat", "#0f7b5f"),
            Service(2, "bard", "/", "#2f5fd0"),
            Service(3, "bitbucket", "/", "#0b2f6b"),
            Service(4, "gitlab", "/", "#d9622b"),
            Service(5, "hemingway", "/", "#b8860b"),
            Service(6, "jira", "/software/jira", "#7a2f9b"),
        ]
        for service in self.all:
            setattr(self, service.name, service)

    def start(self):
        for service in self.all:
            service.start()
        return self

    def stop(self):
        for service in self.all:
            service.stop()

    def clear(self):
        for service in self.all:
            service.clear()


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    block_on_close = False

    def handle_error(self, request, client_address):
        pass  # A page that goes away in the middle of an answer is nothing to tell.


def bind(service, seconds=900, handler=None):
    """The addresses are fixed in the program: a second run on the same machine has to wait for the first."""
    end = time.monotonic() + seconds
    said = False
    while True:
        try:
            server = Server((service.address, PORT), handler or Handler)
            server.service = service
            return server
        except OSError as error:
            if error.errno != errno.EADDRINUSE or time.monotonic() > end:
                raise
            if not said:
                print(f"{service.address}:{PORT} is in use: waiting for another run of these tests to end", flush=True)
                said = True
            time.sleep(1)


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def do_HEAD(self):
        self.route("HEAD")

    def do_GET(self):
        self.route("GET")

    def do_POST(self):
        self.route("POST")

    def route(self, method):
        service = self.server.service
        parts = urllib.parse.urlsplit(self.path)
        query = dict(urllib.parse.parse_qsl(parts.query))
        length = int(self.headers.get("Content-Length") or 0)
        body = self.rfile.read(length) if length else b""
        cookies = dict(
            pair.strip().split("=", 1) for pair in (self.headers.get("Cookie") or "").split(";") if "=" in pair)
        request = Request(method, parts.path, dict(self.headers), cookies, query)
        service.record(request)
        handler = {
            "/report": self.report,
            "/ask": self.ask,
            "/answer": self.answer,
            "/file": self.download,
            "/slow-file": self.slowDownload,
            "/sign-in": self.signIn,
            "/other": self.document,
            "/error": self.error,
            "/never": self.never,
            "/loop": self.loop,
            "/big": self.big,
            "/endless": self.endless,
            "/frame": self.frame,
            "/frames": self.frames,
            "/moved": self.moved,
            "/gigabyte": self.gigabyte,
            "/picture": self.picture,
            "/status": self.status,
            service.home: self.document,
        }.get("/status" if parts.path.startswith("/status/") else parts.path, self.missing)
        handler(service, request, body)

    def give(self, status, body=b"", contentType="text/plain", **headers):
        self.send_response(status)
        self.send_header("Content-Type", contentType)
        self.send_header("Content-Length", str(len(body)))
        self.send_header("Cache-Control", "no-store")
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)

    def picture(self, service, request, body):
        if service.isPictureGone:
            self.missing(service, request, body)
        else:
            self.give(200, PICTURE, "image/png")

    def gigabyte(self, service, request, body):
        """A server that answers a HEAD request with a body, against the rules, and a long one."""
        self.send_response(200)
        self.send_header("Content-Length", str(1 << 30))
        self.end_headers()
        self.close_connection = True
        block = b"x" * (1 << 20)
        service.sent = 0
        try:
            for _ in range(1 << 10):
                self.wfile.write(block)
                service.sent += len(block)
        except OSError:
            pass  # Nobody takes it.

    def moved(self, service, request, body):
        self.give(302, Location=service.home)

    def status(self, service, request, body):
        """/status/403 answers with 403, and so on."""
        self.give(int(request.path.rsplit("/", 1)[1]))

    def document(self, service, request, body):
        page = service.newPage(request.path)
        headers = {}
        if "login" not in request.cookies:
            headers["Set_Cookie"] = f"login={uuid.uuid4().hex}; Path=/; Max-Age=31536000"
        self.give(200, documentOf(service, page).encode(), "text/html; charset=utf-8", **headers)

    def signIn(self, service, request, body):
        page = service.newPage(request.path)
        self.give(200, signInOf(service, page).encode(), "text/html; charset=utf-8",
                  Set_Cookie="signedIn=yes; Path=/; Max-Age=31536000")

    def report(self, service, request, body):
        page = service.pages.get(request.query.get("page"))
        if page:
            page.reports.append(json.loads(body))
        self.give(204)

    def ask(self, service, request, body):
        page = service.pages.get(request.query.get("page"))
        if not page:
            self.give(404)
            return
        try:
            question = page.questions.get(timeout=20)
        except queue.Empty:
            self.give(204)
            return
        try:
            self.give(200, json.dumps(question).encode(), "application/json")
        except OSError:
            page.questions.put(question)

    def answer(self, service, request, body):
        page = service.pages.get(request.query.get("page"))
        if page:
            page.answer(json.loads(body))
        self.give(204)

    def download(self, service, request, body):
        self.give(200, f"a file of {service.name}\n".encode(), "application/octet-stream",
                  Content_Disposition='attachment; filename="report.txt"')

    def slowDownload(self, service, request, body):
        """Half of the file at once, the other half when the test lets it end."""
        self.send_response(200)
        self.send_header("Content-Type", "application/octet-stream")
        self.send_header("Content-Length", "40000")
        self.send_header("Content-Disposition", 'attachment; filename="slow.bin"')
        self.end_headers()
        self.wfile.write(b"x" * 20000)
        self.wfile.flush()
        service.mayEnd.wait(120)
        self.wfile.write(b"x" * 20000)

    def error(self, service, request, body):
        self.give(500, b"<title>Error</title><h1>The server failed</h1>", "text/html")

    def never(self, service, request, body):
        # As long as the program keeps the connection, and no longer than a test may last.
        self.connection.settimeout(120)
        try:
            self.connection.recv(1)
        except OSError:
            pass
        self.close_connection = True

    def loop(self, service, request, body):
        self.give(302, Location=f"/loop?{uuid.uuid4().hex}")

    def big(self, service, request, body):
        row = ("<p>" + "0123456789" * 100 + "</p>\n").encode()
        # It tells of its load like any other page.
        end = f"<script>{fill(SCRIPT, PAGE=service.newPage(request.path).id)}</script>".encode()
        self.give(200, b"<title>Big</title>" + row * (bigPageBytes() // len(row)) + end, "text/html")

    def endless(self, service, request, body):
        """A page that has all it needs but a picture that never comes: its load never ends."""
        page = service.newPage(request.path)
        ready = "<script>addEventListener('DOMContentLoaded', () => { report('load'); listen(); });</script>"
        picture = f'<p>Still loading</p><img width="40" height="40" src="{service.urlOf("/never")}">'
        text = documentOf(service, page).replace("<main>", ready + "<main>" + picture)
        self.give(200, text.encode(), "text/html; charset=utf-8")

    def frame(self, service, request, body):
        self.give(200, f"<p>frame {request.query['number']}</p>".encode(), "text/html")

    def frames(self, service, request, body):
        page = service.newPage(request.path)
        frames = "".join(f'<iframe width="20" height="20" src="/frame?number={n}"></iframe>' for n in range(2000))
        text = documentOf(service, page).replace("<main>", "<main>" + frames)
        self.give(200, text.encode(), "text/html; charset=utf-8")

    def missing(self, service, request, body):
        self.give(404, b"nothing here")


# A PNG of one pixel, with bytes of all kinds.
PICTURE = base64.b64decode(
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPhfDwAChwGA60e6kgAAAABJRU5ErkJggg==")

# What every page can do: report itself and answer.
SCRIPT = r"""
const page = "@PAGE@";
let pointer = null;
function measure(kind, more) {
  return Object.assign({
    kind, innerWidth, innerHeight, devicePixelRatio, scrollY, outerWidth, outerHeight,
    userAgent: navigator.userAgent, cookie: document.cookie, title: document.title,
    visible: document.visibilityState, hasFocus: document.hasFocus(),
    focus: document.activeElement ? document.activeElement.id : ""
  }, more);
}
function send(path, value) {
  return fetch(path + "?page=" + page, {method: "POST", body: JSON.stringify(value)}).catch(() => {});
}
function report(kind, more) { return send("/report", measure(kind, more)); }
async function listen() {
  for (;;) {
    try {
      const response = await fetch("/ask?page=" + page);
      if (response.status === 404) return;
      if (response.status !== 200) continue;
      const question = await response.json();
      const told = {number: question.number};
      try {
        const value = await eval(question.expression);
        told.value = value === undefined ? null : value;
      } catch (error) {
        told.error = String(error);
      }
      send("/answer", told);
    } catch (error) {
      await new Promise(done => setTimeout(done, 300));
    }
  }
}
addEventListener("load", () => { report("load"); listen(); });
addEventListener("resize", () => report("resize"));
addEventListener("mousemove", event => { pointer = {x: event.clientX, y: event.clientY}; });
addEventListener("click", event => report("click", {target: event.target.id}), true);
for (const type of ["keydown", "keyup"])
  addEventListener(type, event => report("key", {type, key: event.key, code: event.code}), true);
addEventListener("paste", event => report("paste", {
  types: Array.from(event.clipboardData.items).map(item => item.type),
  files: Array.from(event.clipboardData.files).map(file => file.type), text: event.clipboardData.getData("text/plain")
}), true);
addEventListener("dragover", event => { if (event.target.id !== "upload") event.preventDefault(); });
addEventListener("drop", event => {
  if (event.target.id === "upload") return;
  event.preventDefault();
  const files = Array.from(event.dataTransfer.files);
  Promise.all(files.map(file => file.text())).then(texts =>
    report("drop", {names: files.map(file => file.name), texts, target: event.target.id}));
});
addEventListener("message", event => report("message", {data: event.data}));
"""

DOCUMENT = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>@TITLE@</title>
<style>
  html { background: #ffffff; }
  body { margin: 0; font: 15px sans-serif; color: #222; }
  header { background: @COLOUR@; color: white; padding: 14px 20px; font-size: 20px; }
  main { padding: 12px 20px; }
  main > p { margin: 8px 0; }
  button, textarea { font: inherit; }
  textarea { width: 90%; height: 48px; }
  #rich { border: 1px solid #bbb; min-height: 22px; }
</style>
<script>@SCRIPT@</script>
</head>
<body>
<header id="header">@TITLE@</header>
<main>
  <p><textarea id="text" placeholder="Write here"></textarea></p>
  <div id="rich" contenteditable="true"></div>
  <p><a id="outside" href="@OUTSIDE@" target="_blank">A page elsewhere</a>
     <a id="other" href="/other">Another page</a>
     <a id="file" href="/file">Download</a></p>
  <p><button id="signIn" onclick="window.open('/sign-in', 'signIn', 'width=420,height=300')">Sign in</button>
     <input id="upload" type="file"></p>
  <p><button id="alert" onclick="dialog('alert', () => alert('Something to know'))">Alert</button>
     <button id="confirm" onclick="dialog('confirm', () => confirm('Go on?'))">Confirm</button>
     <button id="prompt" onclick="dialog('prompt', () => prompt('Your name?', 'nobody'))">Prompt</button>
     <button id="notify" onclick="permission()">Notify</button></p>
  <script>
    function dialog(name, show) {
      report("asked", {dialog: name}).then(() => {
        const value = show();
        report("dialog", {dialog: name, value: value === undefined ? null : value});
      });
    }
    function permission() {
      report("asked", {dialog: "notify"});
      Notification.requestPermission().then(value => report("dialog", {dialog: "notify", value}));
    }
  </script>
  @PARAGRAPHS@
</main>
</body>
</html>
"""

SIGN_IN = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Sign in to @NAME@</title>
<style>body { margin: 0; padding: 30px; background: @COLOUR@; color: white; font: 16px sans-serif; }</style>
<script>@SCRIPT@
function done() {
  if (window.opener) window.opener.postMessage("signed in", "*");
  window.close();
}
</script>
</head>
<body><p>Sign in</p><button id="done" onclick="done()">Done</button></body>
</html>
"""


def fill(text, **values):
    for name, value in values.items():
        text = text.replace(f"@{name}@", value)
    return text


def documentOf(service, page):
    words = "Long pages are there to be scrolled, and this one is long. "
    paragraphs = "\n".join(f"<p>{service.name}, paragraph {n}. {words * 4}</p>" for n in range(1, 60))
    title = service.name if page.path == service.home else f"{service.name}: another page"
    return fill(DOCUMENT, TITLE=title, COLOUR=service.colour, SCRIPT=fill(SCRIPT, PAGE=page.id),
                OUTSIDE=f"http://{host(9)}:{PORT}/outside", PARAGRAPHS=paragraphs)


def signInOf(service, page):
    return fill(SIGN_IN, NAME=service.name, COLOUR=service.colour, SCRIPT=fill(SCRIPT, PAGE=page.id))
