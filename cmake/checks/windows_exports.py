"""Each DLL exports what its checked-in list says. Looks at a build for Windows."""

import re

from project import Project, expect, run, write

OBJDUMP = "x86_64-w64-mingw32-objdump"
LISTS = {"KivGenerics": "Generics/exports-windows.txt", "KivPlatform": "Platform/exports-windows.txt",
         "KivStorage": "Storage/exports-windows.txt"}
ENTRY = re.compile(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+(?:[0-9a-f]{4}\s+)?)?(\S+)$")


def exported(library):
    """The names that a DLL exports, as the linker knows them."""
    status, text = run([OBJDUMP, "-p", library])
    if status != 0:
        raise RuntimeError(text)
    _, found, table = text.partition("[Ordinal/Name Pointer] Table")
    if not found:
        raise RuntimeError(f"{library} has no table of exported names")
    names = set()
    for line in table.splitlines()[1:]:
        entry = ENTRY.match(line)
        if not entry:
            break
        names.add(entry.group(1))
    return names


def check(project):
    problems = []
    for name, path in LISTS.items():
        library = project.gcc_build / "bin" / f"{name}.dll"
        if not library.exists():
            problems.append(f"{library} has not been built")
            continue
        listed = set(project.text(path).splitlines()) if project.exists(path) else set()
        names = exported(library)
        problems += [f"{library}: exports '{each}', which {path} does not list" for each in sorted(names - listed)]
        problems += [f"{library}: does not export '{each}', as {path} says" for each in sorted(listed - names)]
    return problems


def update(project):
    """Writes the lists anew from the build: for a change of the interface that is meant."""
    for name, path in LISTS.items():
        names = exported(project.gcc_build / "bin" / f"{name}.dll")
        write(project.root, **{path: "".join(f"{each}\n" for each in sorted(names))})


def self_test(scratch):
    write(scratch, **{"a.cpp": """
        extern "C" __declspec(dllexport) int Listed() { return 1; }
        extern "C" __declspec(dllexport) int Unlisted() { return 2; }
        extern "C" int Inner() { return 3; }
    """, "Generics/exports-windows.txt": "Listed\nMissing\n"})
    build = Project(scratch, scratch)
    (build.gcc_build / "bin").mkdir()
    status, text = run(["x86_64-w64-mingw32-g++-posix", "-shared", "-o", build.gcc_build / "bin" / "KivGenerics.dll",
                        build.root / "a.cpp"])
    if status != 0:
        return [text]
    return expect(check(build), "exports 'Unlisted'", "does not export 'Missing'",
                  "KivPlatform.dll has not been built", "KivStorage.dll has not been built")
