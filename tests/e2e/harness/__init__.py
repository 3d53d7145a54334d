"""What the end-to-end tests stand on: a desktop of their own, the built program in it, real clicks and keys, and
loopback servers in the place of the outside services."""
from .case import VelkinTestCase
from .waiting import waitFor

__all__ = ["VelkinTestCase", "waitFor"]
