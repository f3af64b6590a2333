"""Each shared library exports what its checked-in list says, and no unique symbols, which would pin it in a process."""

import re
import tempfile

from project import Project, expect, run, write

LISTS = {"KivGenerics": "Generics/exports.txt", "KivPlatform": "Platform/exports.txt",
         "KivStorage": "Storage/exports.txt"}


def exported(library):
    """The demangled names that a library exports, and those of them that are unique symbols."""
    status, text = run(["nm", "-D", "--defined-only", "-C", library])
    if status != 0:
        raise RuntimeError(text)
    names, unique = set(), set()
    for line in text.splitlines():
        found = re.match(r"[0-9a-f]* *(\S) (.*)", line)
        names.add(found.group(2))
        if found.group(1) == "u":
            unique.add(found.group(2))
    return names, unique


def check(project):
    problems = []
    for build in (project.gcc_build, project.clang_build):
        for name, path in LISTS.items():
            library = build / "lib" / f"lib{name}.so.1"
            if not library.exists():
                problems.append(f"{library} has not been built")
                continue
            listed = set(project.text(path).splitlines()) if project.exists(path) else set()
            names, unique = exported(library)
            problems += [f"{library}: exports '{each}', which {path} does not list" for each in sorted(names - listed)]
            problems += [f"{library}: does not export '{each}', as {path} says" for each in sorted(listed - names)]
            problems += [f"{library}: '{each}' is a unique symbol" for each in sorted(unique)]
    return problems


def update(project):
    """Writes the lists anew from the build with g++: for a change of the interface that is meant."""
    for name, path in LISTS.items():
        names, _ = exported(project.gcc_build / "lib" / f"lib{name}.so.1")
        write(project.root, **{path: "".join(f"{each}\n" for each in sorted(names))})


def self_test(scratch):
    source = """
        struct __attribute__((visibility("default"))) A { void Listed(); void Unlisted(); };
        void A::Listed() {}
        void A::Unlisted() {}
        inline int& One() { static int one = 1; return one; }
        int Two() { return One(); }
    """
    write(scratch, **{"a.cpp": source, "Generics/exports.txt": "A::Listed()\nA::Missing()\nTwo()\nOne()\nOne()::one\n"})
    with tempfile.TemporaryDirectory() as other:
        build = Project(scratch, scratch, other)
        (build.gcc_build / "lib").mkdir()
        status, text = run(["g++", "-shared", "-fPIC", "-fgnu-unique", "-o",
                            build.gcc_build / "lib" / "libKivGenerics.so.1", build.root / "a.cpp"])
        if status != 0:
            return [text]
        problems = [each for each in check(build) if "has not been built" not in each]
        missing = [each for each in check(build) if "has not been built" in each]
    return expect(problems, "exports 'A::Unlisted()'", "does not export 'A::Missing()'",
                  "'One()::one' is a unique symbol") + expect(missing, *["has not been built"] * 5)
