"""Each public header compiles alone and without a warning, with g++ and clang++, as C++17 and C++20."""

import itertools

from project import Project, expect, for_each, run, write
from stamps import Stamps, digest

WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror")


def check(project):
    headers = project.public_headers()
    folders = [f"-I{project.root / folder}" for folder in sorted({"/".join(path.parts[:2]) for path in headers})]
    content = digest(*(project.root / path for path in headers), *WARNINGS)
    stamps = Stamps(project.clang_build / "checks" / "self-contained")
    if not headers:
        return ["there are no public headers"]

    def compile_alone(case):
        header, compiler, standard = case
        stamp = digest(content, str(header), compiler, standard)
        if stamps.is_good(stamp):
            return None
        # Included twice, it must also guard itself.
        name = "/".join(header.parts[2:])
        status, text = run([compiler, f"-std={standard}", *WARNINGS, *folders, "-fsyntax-only", "-x", "c++", "-"],
                           input=f"#include <{name}>\n#include <{name}>\n")
        if status != 0:
            return f"{header} does not compile alone with {compiler} as {standard}:\n{text}"
        stamps.add(stamp)
        return None

    problems = [each for each in for_each(itertools.product(headers, ("g++", "clang++-19"), ("c++17", "c++20")),
                                          compile_alone) if each]
    stamps.save()
    return problems


def self_test(scratch):
    write(scratch, **{"A/include/Kiv/Good.h": "#pragma once\n#include <string>\nusing Text = std::string;\n",
                      "A/include/Kiv/Bad.h": "#pragma once\nusing Text = std::string;\n"})
    project = Project(scratch, None, Project(scratch).root / "build")
    problems = ["A/include/Kiv/Bad.h does not compile alone"] * 4
    return expect(check(project), *problems) + expect(check(project), *problems)
