"""The sources are formatted as .clang-format says; `cmake/checks/lint --fix` does it."""

from project import Project, expect, for_each, run, write


def check(project):
    def formatted(path):
        status, text = run(["clang-format-19", "--dry-run", "-Werror", path], cwd=project.root)
        return None if status == 0 else text.splitlines()[0]

    return [each for each in for_each(project.files(".h", ".cpp"), formatted) if each]


def fix(project):
    files = project.files(".h", ".cpp")
    status, text = run(["clang-format-19", "-i", *files], cwd=project.root)
    if status != 0:
        raise RuntimeError(text)


def self_test(scratch):
    write(scratch, **{".clang-format": "BasedOnStyle: Google\n", "Good.cpp": "int a;\n", "Bad.cpp": "int   a;\n"})
    problems = expect(check(Project(scratch)), "Bad.cpp:1")
    fix(Project(scratch))
    return problems + expect(check(Project(scratch)))
