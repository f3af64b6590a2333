"""No test drops out of the build for Windows: what is not in it is named with its reason in not-on-windows.txt."""

import json

from project import Project, expect, write

LIST = "cmake/checks/not-on-windows.txt"


def check(project):
    """Looks at a build for Windows."""
    compiled = project.compiled(project.gcc_build)
    listed, reason, problems = set(), False, []
    for line in project.text(LIST).splitlines():
        if not line:
            reason = False
        elif line.startswith("#"):
            reason = True
        else:
            listed.add(line)
            if not reason:
                problems.append(f"{LIST}: {line} stands there without a reason")
    files = {path.as_posix(): path for path in project.files("Test.cpp", below="Tests")}
    problems += [f"{LIST}: there is no {name}" for name in sorted(listed - set(files))]
    for name, path in files.items():
        if (path in compiled) == (name in listed):
            problems.append(f"{name} is in the build, and in {LIST}" if path in compiled else
                            f"{name} is neither in the build nor in {LIST}")
    return problems


def self_test(scratch):
    commands = [{"directory": str(scratch), "file": f"Tests/core/{name}Test.cpp", "command": ""}
                for name in ("Built", "Both")]
    write(scratch, **{f"Tests/core/{name}Test.cpp": "" for name in ("Built", "Both", "LeftOut", "ReadyPosix")})
    write(scratch, **{
        LIST: "# A reason.\nTests/core/BothTest.cpp\n\nTests/core/ReadyPosixTest.cpp\n\n# One.\nTests/core/GoneTest.cpp\n",
        "build/compile_commands.json": json.dumps(commands),
    })
    project = Project(scratch, Project(scratch).root / "build")
    return expect(check(project), "ReadyPosixTest.cpp stands there without a reason", "there is no Tests/core/GoneTest.cpp",
                  "BothTest.cpp is in the build, and in", "LeftOutTest.cpp is neither in the build nor in")
