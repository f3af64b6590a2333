"""What was found good before, and has not changed since, is not looked at again."""

import hashlib
import pathlib


def digest(*parts):
    """One text for the content of all parts: paths are read, everything else is taken as text."""
    total = hashlib.sha256()
    for part in parts:
        total.update(part.read_bytes() if isinstance(part, pathlib.Path) else str(part).encode())
        total.update(b"\0")
    return total.hexdigest()


class Stamps:
    """The digests of what was found good, in a file that is rewritten with those that were asked for this time."""

    def __init__(self, path):
        self.path = path
        self.known = set(path.read_text().split()) if path.exists() else set()
        self.good = set()

    def is_good(self, text):
        if text in self.known:
            self.good.add(text)
        return text in self.known

    def add(self, text):
        self.good.add(text)

    def save(self):
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.path.write_text("".join(f"{each}\n" for each in sorted(self.good)))
