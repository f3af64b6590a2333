"""No test drops out of the build: every test file is compiled, and every test in it is registered."""

import json
import re

from project import Project, expect, run, write

TEST = re.compile(r"^(TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P|RC_GTEST_PROP)\(\s*(\w+),\s*(\w+)", re.MULTILINE)


def registered(build):
    """The names of the tests that ctest knows."""
    status, text = run(["ctest", "--test-dir", build, "--show-only=json-v1"])
    if status != 0:
        raise RuntimeError(text)
    return [each["name"] for each in json.loads(text)["tests"]]


def missing(path, text, names):
    """The tests of a file that are not among the registered names."""
    problems = []
    for macro, suite, test in TEST.findall(text):
        if macro in ("TEST", "TEST_F", "RC_GTEST_PROP"):
            found = f"{suite}.{test}" in names
        else:
            # With a parameter, a prefix, the parameter's number or its type go with the name.
            found = any(suite in name and re.search(rf"\.{test}(\W|$)", name) for name in names)
        if not found:
            problems.append(f"{path}: {suite}.{test} is no registered test")
    return problems


def check(project, names=None):
    if names is None:
        names = registered(project.gcc_build)
    names = set(names)
    compiled = project.compiled(project.gcc_build)
    problems = []
    # What is for Windows alone is not in this build.
    for path in project.files("Test.cpp", below="Tests"):
        if path.name.endswith("WindowsTest.cpp"):
            continue
        if path not in compiled:
            problems.append(f"{path} is not in the build")
            continue
        text = project.text(path)
        if not TEST.search(text):
            problems.append(f"{path} has no test")
        problems += missing(path, text, names)
    return problems


def self_test(scratch):
    commands = [{"directory": str(scratch), "file": f"Tests/core/{name}Test.cpp", "command": ""}
                for name in ("Built", "Empty")]
    write(scratch, **{
        "Tests/core/BuiltTest.cpp": "TEST(A, One) {}\nTEST_F(A, Two) {}\nTEST_P(B, Three) {}\nTEST_P(B, Four) {}\n",
        "Tests/core/EmptyTest.cpp": "// TEST(A, One)\n",
        "Tests/core/LeftOutTest.cpp": "TEST(A, One) {}\n",
        "Tests/core/OnWindowsTest.cpp": "TEST(A, Other) {}\n",
        "build/compile_commands.json": json.dumps(commands),
    })
    project = Project(scratch, Project(scratch).root / "build")
    return expect(check(project, ["A.One", "All/B.Three/0"]), "A.Two is no registered test",
                  "B.Four is no registered test", "EmptyTest.cpp has no test", "LeftOutTest.cpp is not in the build")
