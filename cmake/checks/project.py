"""What every check needs: the project's files, the builds, and a way to report."""

import json
import os
import pathlib
import subprocess
from concurrent.futures import ThreadPoolExecutor

NOT_OURS = {".git", "build", "out", "__pycache__"}


class Project:
    """A source tree and the builds of it that the checks look at: one with g++, one with clang++."""

    def __init__(self, root, gcc_build=None, clang_build=None):
        self.root = pathlib.Path(root)
        self.gcc_build = pathlib.Path(gcc_build) if gcc_build else None
        self.clang_build = pathlib.Path(clang_build) if clang_build else None

    def files(self, *suffixes, below=""):
        """The files with one of these suffixes (all, without suffixes), as sorted paths relative to the root."""
        found = []
        for folder, folders, names in os.walk(self.root / below):
            folders[:] = sorted(set(folders) - NOT_OURS)
            for name in names:
                if not suffixes or name.endswith(suffixes):
                    found.append((pathlib.Path(folder) / name).relative_to(self.root))
        return sorted(found)

    def text(self, path):
        return (self.root / path).read_text(encoding="utf-8")

    def exists(self, path):
        return (self.root / path).exists()

    def public_headers(self):
        return [path for path in self.files(".h") if len(path.parts) > 2 and path.parts[1] == "include"]

    def compiled(self, build):
        """The entries of a build's compile commands, by path relative to the root."""
        entries = {}
        for entry in json.loads((build / "compile_commands.json").read_text()):
            path = pathlib.Path(os.path.normpath(os.path.join(entry["directory"], entry["file"])))
            if path.is_relative_to(self.root) and not path.is_relative_to(build):
                entries[path.relative_to(self.root)] = entry
        return entries


def write(root, **files):
    """Makes files for a self-test: `write(root, **{"a/b.h": "text"})`."""
    for name, text in files.items():
        path = pathlib.Path(root) / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


def expect(problems, *parts):
    """For a self-test: exactly one problem for each part, and that contains it. Returns what is wrong with the check."""
    wrong = [f"finds nothing that says '{part}'" for part in parts if not any(part in each for each in problems)]
    if len(problems) != len(parts):
        wrong.append(f"finds {len(problems)} problems where {len(parts)} are: {problems}")
    return wrong


def run(command, **options):
    """Runs a command; returns its exit status and everything it printed."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, errors="replace", check=False, **options)
    return done.returncode, done.stdout


def for_each(items, work):
    """The results of `work` for each item, in order, with a thread for each processor."""
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(work, items))
