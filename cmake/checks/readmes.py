"""Each folder says in its README what it holds, what it sees, where to start, and what does not belong there."""

import re

from project import Project, expect, write

HEADINGS = ("Holds", "Sees", "Start reading at", "Does not belong here")
ALWAYS = ("Generics", "Platform", "Storage", "Examples", "Benchmarks", "Docs", "Tests", "cmake")
WHERE_THEY_ARE = ("Inspect", "Tools", "Fuzz")


def folders(project):
    """The folders that need a README: those at the top, and below Generics each one with sources."""
    yield from ALWAYS
    yield from (name for name in WHERE_THEY_ARE if project.exists(name))
    yield from sorted({f"Generics/{path.parts[1]}" for path in project.files(".h", ".cpp", below="Generics")})


def check(project):
    problems = []
    for folder in folders(project):
        path = f"{folder}/README.md"
        if not project.exists(path):
            problems.append(f"{path} is missing")
            continue
        text = project.text(path)
        problems += [f"{path}: nothing stands under '{heading}'" for heading in HEADINGS
                     if not re.search(rf"^[#*\s-]*{heading}\b[*:.\s]*\S", text, re.MULTILINE)]
    return problems


def self_test(scratch):
    whole = "# A\n\n## Holds\n\nX\n\n*Sees*: Y\n\n**Start reading at** Z\n\n## Does not belong here\n\nW\n"
    write(scratch, **{f"{name}/README.md": whole for name in ALWAYS})
    write(scratch, **{"Generics/core/A.h": "", "Generics/core/README.md": whole.replace("## Holds", "## Has"),
                      "Generics/values/A.h": ""})
    return expect(check(Project(scratch)), "Generics/core/README.md: nothing stands under 'Holds'",
                  "Generics/values/README.md is missing")
