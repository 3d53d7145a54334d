"""An input method for one session: letters are composed, Backspace takes the last one of them back, Escape all of them, and
Space or Return commits what is left in brackets. Tells on standard output when it is ready, and each key that it takes. Runs by the system's Python,
which has the bindings, with the address of the session's daemon in its environment."""
import gi

gi.require_version("IBus", "1.0")
from gi.repository import GLib, IBus  # noqa: E402  # after the version

NAME = "velkin-brackets"
RELEASED = int(IBus.ModifierType.RELEASE_MASK)


class Engine(IBus.Engine):
    __gtype_name__ = "VelkinBracketsEngine"

    def __init__(self):
        super().__init__()
        self.letters = ""

    def show(self):
        text = IBus.Text.new_from_string(self.letters)
        self.update_preedit_text_with_mode(text, len(self.letters), bool(self.letters), IBus.PreeditFocusMode.CLEAR)

    def do_process_key_event(self, keyval, keycode, state):
        if state & (RELEASED | int(IBus.ModifierType.CONTROL_MASK)):
            return False
        if ord("a") <= keyval <= ord("z"):
            self.letters += chr(keyval)
        elif keyval == IBus.KEY_BackSpace and self.letters:
            self.letters = self.letters[:-1]
        elif keyval == IBus.KEY_Escape and self.letters:
            self.letters = ""
        elif keyval in (IBus.KEY_space, IBus.KEY_Return) and self.letters:
            text, self.letters = self.letters, ""
            self.show()
            self.commit_text(IBus.Text.new_from_string(f"[{text}]"))
            print("committed", flush=True)
            return True
        else:
            return False
        self.show()
        print(f"composing {self.letters}", flush=True)
        return True


IBus.init()
bus = IBus.Bus()
factory = IBus.Factory.new(bus.get_connection())
factory.add_engine(NAME, Engine)
component = IBus.Component.new("com.tarnvale.Velkin.Brackets", NAME, "1", "MIT", "", "", "", "velkin")
component.add_engine(IBus.EngineDesc.new(NAME, NAME, NAME, "en", "MIT", "", "", "us"))
assert bus.register_component(component)


def chosen(_bus, result):
    assert bus.set_global_engine_async_finish(result)
    print("ready", flush=True)


# Not at once: the daemon asks here for the method meanwhile.
bus.set_global_engine_async(NAME, 10000, None, chosen)
GLib.MainLoop().run()
