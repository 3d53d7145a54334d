"""A chat-completions service on its loopback address, which answers as the test wants: well, late, or badly."""
import atexit
import http.server
import json
import socket
import struct
import threading
from dataclasses import dataclass

from .services import bind, host
from .waiting import waitFor


_completions = None


def sharedCompletions():
    """One for the whole run: its address is fixed."""
    global _completions
    if _completions is None:
        _completions = Completions().start()
        atexit.register(_completions.stop)
    return _completions


@dataclass(frozen=True)
class Asked:
    path: str
    headers: dict
    body: bytes

    @property
    def prompt(self):
        return json.loads(self.body)["messages"][0]["content"]

    @property
    def key(self):
        return self.headers.get("Authorization", "").removeprefix("Bearer ")


def well(markdown):
    """An answer as the service gives it."""
    body = json.dumps({"id": "x", "choices": [{"index": 0, "message": {"role": "assistant", "content": markdown}}]})
    return lambda handler: handler.give(200, body.encode())


def status(code, body=b'{"error": {"message": "no"}}'):
    return lambda handler: handler.give(code, body)


def raw(body):
    return lambda handler: handler.give(200, body)


def cutOff(body=b'{"choices": [{"message": {"content": "half'):
    def answer(handler):
        handler.send_response(200)
        handler.send_header("Content-Length", str(len(body) * 2))
        handler.end_headers()
        handler.wfile.write(body)
        handler.close_connection = True

    return answer


def reset(handler):
    handler.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    # All that holds the socket, or it stays open.
    handler.rfile.close()
    handler.wfile.close()
    handler.connection.close()
    handler.close_connection = True


class Held:
    """An answer that comes when the test lets it."""

    def __init__(self, answer):
        self._answer = answer
        self._gate = threading.Event()

    def release(self):
        self._gate.set()

    def __call__(self, handler):
        self._gate.wait(60)
        self._answer(handler)


class Completions:
    address = host(7)

    def __init__(self):
        self._lock = threading.Lock()
        self._server = None
        self.clear()

    def clear(self):
        with self._lock:
            self.requests = []
            self._answers = []

    def willAnswer(self, *answers):
        """The next answers, in order; the last one is given again and again."""
        with self._lock:
            self._answers = list(answers)

    def takeAnswer(self, asked):
        with self._lock:
            self.requests.append(asked)
            if not self._answers:
                return status(500)
            return self._answers.pop(0) if len(self._answers) > 1 else self._answers[0]

    def waitForRequest(self, number=0):
        """The request of that number, counted from 0."""
        return waitFor(f"request number {number} to the completions",
                       lambda: self.requests[number] if len(self.requests) > number else None, 15,
                       describe=lambda: f"there were {len(self.requests)}")

    def start(self):
        self._server = bind(self, handler=Handler)
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.1}, daemon=True).start()
        return self

    def stop(self):
        self._server.shutdown()
        self._server.server_close()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def do_POST(self):
        length = int(self.headers.get("Content-Length") or 0)
        asked = Asked(self.path, dict(self.headers), self.rfile.read(length))
        self.server.service.takeAnswer(asked)(self)

    def do_GET(self):
        self.server.service.takeAnswer(Asked(self.path, dict(self.headers), b""))
        self.give(404, b"")

    def give(self, code, body):
        self.send_response(code)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)
