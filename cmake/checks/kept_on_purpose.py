"""Every oddity that is kept on purpose has its entry in the document, its mark in the code and its mark at a test."""

import re

from project import Project, expect, write

DOCUMENT = "Docs/kept-on-purpose.md"
MARK = re.compile(r"kept-on-purpose:\s*([a-z0-9-]+)")


def marks(project, *folders):
    """The places of each mark: {id: ["file:line"]}."""
    found = {}
    for folder in folders:
        for path in project.files(".h", ".cpp", below=folder):
            for number, line in enumerate(project.text(path).splitlines(), 1):
                for each in MARK.findall(line):
                    found.setdefault(each, []).append(f"{path}:{number}")
    return found


def check(project):
    if not project.exists(DOCUMENT):
        return [f"{DOCUMENT} is missing"]
    entries = re.findall(r"^## +`?([a-z0-9-]+)`?\s*$", project.text(DOCUMENT), re.MULTILINE)
    in_code = marks(project, "Generics", "Platform", "Storage")
    in_tests = marks(project, "Tests")
    problems = [f"{DOCUMENT}: '{each}' stands there twice" for each in sorted(set(entries)) if entries.count(each) > 1]
    for each in sorted(set(entries)):
        if each not in in_code:
            problems.append(f"{DOCUMENT}: '{each}' has no mark where the code does it")
        if each not in in_tests:
            problems.append(f"{DOCUMENT}: '{each}' has no mark at a test")
    for found in (in_code, in_tests):
        problems += [f"{places[0]}: '{each}' has no entry in {DOCUMENT}"
                     for each, places in sorted(found.items()) if each not in entries]
    return problems


def self_test(scratch):
    write(scratch, **{
        DOCUMENT: "# Kept\n\n## one-whole\n\ntext\n\n## two-no-code\n\n## three-no-test\n\n## one-whole\n",
        "Generics/core/A.cpp": "// kept-on-purpose: one-whole\n// kept-on-purpose: three-no-test\n"
                               "// kept-on-purpose: four-no-entry\n",
        "Tests/core/ATest.cpp": "// kept-on-purpose: one-whole\n// kept-on-purpose: two-no-code\n",
    })
    return expect(check(Project(scratch)), "'two-no-code' has no mark where", "'three-no-test' has no mark at a test",
                  "'four-no-entry' has no entry", "'one-whole' stands there twice")
