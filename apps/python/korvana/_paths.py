"""Names of files."""
import os

from korvana._errors import UsageError


def path_bytes(path):
    """A path as the system takes it."""
    name = os.fsencode(path)
    if b"\0" in name:
        raise UsageError(f"no file has a zero byte in its name, as {path!r} has")
    return name
