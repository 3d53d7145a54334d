"""A keyboard and a pointer for a Wayland session that has no hardware: a client of the compositor, in the protocol's
own bytes, that makes virtual devices (zwp_virtual_keyboard_v1, zwlr_virtual_pointer_v1). Keys have the positions of
a real keyboard's, which is what the program goes by."""
import array
import os
import socket
import struct
import time

KEYMAP = """xkb_keymap {
  xkb_keycodes { include "evdev+aliases(qwerty)" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us+inet(evdev)" };
};
"""

# The kernel's codes of the keys, row by row.
ROWS = {2: "1234567890-=", 16: "qwertyuiop[]", 30: "asdfghjkl;'`", 43: "\\zxcvbnm,./"}
CODES = {character: first + number for first, row in ROWS.items() for number, character in enumerate(row)}
CODES.update({"Escape": 1, "BackSpace": 14, "Tab": 15, "Return": 28, "space": 57, " ": 57, "Left": 105, "Right": 106,
              "Up": 103, "Down": 108})
# Modifiers: the key's code, and its bit in the state.
MODIFIERS = {"shift": (42, 1), "ctrl": (29, 4), "alt": (56, 8), "super": (125, 64)}
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}

DISPLAY = 1


class VirtualInput:
    def __init__(self, path, width, height):
        self._extent = (width, height)
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(10)
        self._socket.connect(str(path))
        self._lastObject = DISPLAY
        self._received = b""
        self._globals = {}
        self._held = 0

        self._registry = self._newObject()
        self._send(DISPLAY, 1, struct.pack("I", self._registry))
        self.roundTrip()
        seat = self._bind("wl_seat", 1)
        keyboards = self._bind("zwp_virtual_keyboard_manager_v1", 1)
        pointers = self._bind("zwlr_virtual_pointer_manager_v1", 1)
        self._keyboard = self._newObject()
        self._send(keyboards, 0, struct.pack("II", seat, self._keyboard))
        self._pointer = self._newObject()
        self._send(pointers, 0, struct.pack("II", seat, self._pointer))
        self._giveKeymap()
        self.roundTrip()

    def close(self):
        self._socket.close()

    # What a person does

    def move(self, x, y):
        self._send(self._pointer, 1, struct.pack("5I", self._now(), x, y, *self._extent))
        self._send(self._pointer, 4)
        self.roundTrip()

    def button(self, number, isDown):
        self._send(self._pointer, 2, struct.pack("3I", self._now(), BUTTONS[number], isDown))
        self._send(self._pointer, 4)
        self.roundTrip()

    def key(self, name, isDown):
        """A key by its character without modifiers, or by its name; a modifier by its own."""
        code, bit = MODIFIERS.get(name) or (CODES[name], 0)
        self._send(self._keyboard, 1, struct.pack("3I", self._now(), code, isDown))
        if bit:
            self._held = self._held | bit if isDown else self._held & ~bit
            self._send(self._keyboard, 2, struct.pack("4I", self._held, 0, 0, 0))
        self.roundTrip()

    # The protocol

    def roundTrip(self):
        """Comes back when the compositor has seen all of it."""
        callback = self._newObject()
        self._send(DISPLAY, 0, struct.pack("I", callback))
        while True:
            sender, opcode, body = self._receive()
            if sender == callback:
                return
            if sender == DISPLAY and opcode == 0:
                raise RuntimeError(f"the compositor refused: {body[12:].decode(errors='replace')}")
            if sender == self._registry and opcode == 0:
                number, length = struct.unpack_from("II", body)
                self._globals[body[8:8 + length - 1].decode()] = number

    def _newObject(self):
        self._lastObject += 1
        return self._lastObject

    def _bind(self, interface, version):
        if interface not in self._globals:
            raise RuntimeError(f"the compositor has no {interface}")
        new = self._newObject()
        name = interface.encode() + b"\0"
        text = struct.pack("I", len(name)) + name + b"\0" * (-len(name) % 4)
        self._send(self._registry, 0, struct.pack("I", self._globals[interface]) + text + struct.pack("II", version, new))
        return new

    def _giveKeymap(self):
        content = KEYMAP.encode() + b"\0"
        file = os.memfd_create("keymap")
        os.write(file, content)
        self._send(self._keyboard, 0, struct.pack("II", 1, len(content)), file)
        os.close(file)

    def _send(self, target, opcode, body=b"", file=None):
        message = struct.pack("II", target, (8 + len(body)) << 16 | opcode) + body
        with_file = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [file]))] if file is not None else []
        self._socket.sendmsg([message], with_file)

    def _receive(self):
        while True:
            if len(self._received) >= 8:
                sender, size = struct.unpack_from("II", self._received)
                if len(self._received) >= size >> 16:
                    message, self._received = self._received[:size >> 16], self._received[size >> 16:]
                    return sender, size & 0xFFFF, message[8:]
            some = self._socket.recv(65536)
            if not some:
                raise RuntimeError("the compositor hung up")
            self._received += some

    @staticmethod
    def _now():
        return int(time.monotonic() * 1000) & 0xFFFFFFFF
