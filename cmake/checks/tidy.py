"""clang-tidy finds nothing in what is not a test; .clang-tidy says what it looks for."""

import json

from project import Project, expect, for_each, run, write
from stamps import Stamps, digest


def check(project):
    compiled = project.compiled(project.clang_build)
    sources = sorted(path for path in compiled if path.parts[0] != "Tests")
    if not sources:
        return ["the build has no sources"]
    settings = digest(project.root / ".clang-tidy", *(project.root / path for path in project.files(".h")))
    stamps = Stamps(project.clang_build / "checks" / "tidy")

    def tidy(path):
        entry = compiled[path]
        stamp = digest(settings, str(path), project.root / path, entry.get("command", entry.get("arguments")))
        if stamps.is_good(stamp):
            return None
        status, text = run(["clang-tidy-19", "--quiet", "-p", project.clang_build, project.root / path])
        if status != 0:
            return "\n".join(line for line in text.splitlines() if "warnings generated" not in line)
        stamps.add(stamp)
        return None

    problems = [each for each in for_each(sources, tidy) if each]
    stamps.save()
    return problems


def self_test(scratch):
    names = ("Good", "Bad")
    write(scratch, **{
        ".clang-tidy": "Checks: '-*,bugprone-sizeof-expression'\nWarningsAsErrors: '*'\n",
        "A/Good.cpp": "int a = sizeof(int);\n",
        "A/Bad.cpp": "int a = sizeof(sizeof(int));\n",
        "build/compile_commands.json": json.dumps(
            [{"directory": str(scratch), "file": f"A/{name}.cpp", "command": f"clang++-19 -c A/{name}.cpp"}
             for name in names]),
    })
    project = Project(scratch, None, Project(scratch).root / "build")
    return expect(check(project), "A/Bad.cpp:1") + expect(check(project), "A/Bad.cpp:1")
