"""Small mistakes that can be made in the library's sources, and how they are made in a copy of it: many at once, each behind a
switch that is asked while the library runs. A number that the compiler must know, such as the size of an array, has no switch.
"""

import collections
import re
from dataclasses import dataclass

# A line that does not say what is done: comments, includes, what is only declared, what ends the program in a debug build; what
# is only hinted to the processor.
NOT_CODE = re.compile(r"^\s*(//|#|\*|using |namespace |template|static_assert|assert\(|"
                      r"\S*(Prefetch\w*|Fetch|__builtin_prefetch)\()")
CONDITION = re.compile(r"\b(if|while) \((?!!\()(?P<what>[^;{]*)\) \{")
NUMBER = re.compile(r"(?<![\w.'])(?P<what>\d+|0x[0-9A-Fa-f]+)(?![\w.'])")
CALL = re.compile(r"^    +(?P<what>(?!return\b|throw\b|delete\b|case\b)[\w:.>()*-]*\w\([^{}=]*\);)$")

# How each kind is shown, and how it is made when the switch says so. {0} is what stands there, {1} the switch's number.
KINDS = ((CONDITION, "!({0})", "MistakeIs({1}) != static_cast<bool>({0})"),
         (NUMBER, "({0} + 1)", "(MistakeIs({1}) ? {0} + 1 : {0})"),
         (CALL, "left out: {0}", "if (!MistakeIs({1})) {{ {0} }}"))

# Every file asks for itself, so that no symbol has to be shared. A program is started for one mistake, by its number.
SWITCH = """#pragma once
#include <cstdlib>
namespace {
const char* const mistakeText = std::getenv("KIV_MISTAKE");
const int mistakeNumber = mistakeText != nullptr ? std::atoi(mistakeText) : -1;
inline bool MistakeIs(int number) { return number == mistakeNumber; }
}
"""


@dataclass(frozen=True, order=True)
class Mistake:
    """Something else than stands in these columns of a line. Lines are counted from 0."""
    path: str
    line: int
    start: int
    end: int
    kind: int
    text: str

    def __str__(self):
        return f"{self.path}:{self.line + 1}: {self.text}"

    def name(self):
        """The same without the number of the line, which every change of the file may move."""
        return f"{self.path}: {self.text}"


def find(root):
    """Every mistake that can be made in Generics/ below this folder."""
    every = []
    for path in sorted((root / "Generics").rglob("*.[ch]*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        for number, line in enumerate(path.read_text().splitlines()):
            if not NOT_CODE.match(line):
                every += in_line(path.relative_to(root).as_posix(), number, line.split("//")[0].rstrip())
    return every


def in_line(path, number, code):
    for kind, (pattern, change, _) in enumerate(KINDS):
        for found in pattern.finditer(code):
            start, end = found.span("what")
            if code.count('"', 0, start) % 2 == 0:
                text = code[:start] + change.format(found.group("what")) + code[end:]
                yield Mistake(path, number, start, end, kind, text.strip())


def render(code, start, end, inside):
    """The columns of a line with these mistakes in them, each behind its switch. One may stand inside the other."""
    text, at = "", start
    while inside:
        (number, outer), *rest = inside
        within = [(n, mistake) for n, mistake in rest if mistake.end <= outer.end]
        text += code[at:outer.start]
        text += KINDS[outer.kind][2].format(render(code, outer.start, outer.end, within), number)
        at, inside = outer.end, rest[len(within):]
    return text + code[at:end]


def make_all(root, numbered):
    """Makes all of them behind switches. Every file that is changed gets one line more, at its front."""
    by_place = collections.defaultdict(lambda: collections.defaultdict(list))
    for number, mistake in numbered:
        by_place[mistake.path][mistake.line].append((number, mistake))
    (root / "Generics/include/MistakeIs.h").write_text(SWITCH)
    for name, by_line in by_place.items():
        lines = (root / name).read_text().splitlines()
        for line, here in by_line.items():
            here.sort(key=lambda each: (each[1].start, -each[1].end))
            lines[line] = render(lines[line], 0, len(lines[line]), here)
        (root / name).write_text("\n".join(["#include <MistakeIs.h>", *lines]) + "\n")


def refused(root, log, numbered):
    """The numbers of the mistakes that the compiler's errors are about: on the line, or else nearest before it."""
    numbers = set()
    for name, line in set(re.findall(r"(?:^|[\s(])\S*?(Generics/[\w./]+):(\d+):\d+: (?:fatal )?error", log)):
        here = [(mistake.line, number) for number, mistake in numbered
                if mistake.path == name and mistake.line <= int(line) - 2]
        if here:
            nearest = max(here)[0]
            numbers |= {number for at, number in here if at == nearest}
    return numbers
