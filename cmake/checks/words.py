"""The repository explains itself: it names no document or place that its reader does not have, and hides no test."""

import re

from project import Project, expect, write

# Built from halves, so that this file does not contain what it looks for.
EVERYWHERE = {
    "specif" + r"ications?\b": "names a document that the reader does not have",
    r"\bthe sp" + r"ec\b": "names a document that the reader does not have",
    r"\bPart" + r" \d\.\d": "names a document that the reader does not have",
    r"\b[Ii]ss" + r"ue #?\d": "names a ticket that the reader does not have",
    r"(?<![\w.])/(wo" + r"rk|ho" + r"me|ro" + r"ot)/": "names a place on one machine",
}
IN_SOURCES = {
    r"\bDISAB" + "LED_": "hides a test",
    "GTEST_SK" + "IP": "hides a test",
    r"\bNOLI" + "NT": "silences clang-tidy",
    r"\b(TO" + "DO|FIX" + r"ME|X" + r"XX)\b": "leaves work undone",
}
SOURCES = (".h", ".cpp", ".cmake", ".txt", ".py", ".md")


def check(project):
    problems = []
    for path in project.files():
        try:
            text = project.text(path)
        except UnicodeDecodeError:
            continue
        patterns = {**EVERYWHERE, **(IN_SOURCES if path.name.endswith(SOURCES) else {})}
        for number, line in enumerate([str(path)] + text.splitlines()):
            place = f"{path}:{number}" if number else f"{path}: the name"
            problems += [f"{place}: '{found.group(0)}' {reason}" for pattern, reason in patterns.items()
                         if (found := re.search(pattern, line))]
    return problems


def self_test(scratch):
    write(scratch, **{
        "a.md": "As the sp" + "ec says.\nSee Part" + " 2.1.\nA special part.\n",
        "b.cpp": "// TO" + "DO\nTEST(A, DISAB" + "LED_One) {}\n",
        "c.sh": "cd /wo" + "rk/here\nls $root/home\n",
        "specif" + "ication.txt": "",
    })
    return expect(check(Project(scratch)), "a.md:1", "a.md:2", "b.cpp:1", "b.cpp:2", "c.sh:1", ".txt: the name")
