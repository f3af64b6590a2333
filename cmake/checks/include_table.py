"""Includes point one way: each folder sees only the folders below it."""

import re

from project import Project, expect, write

PLATFORM_NAMES = ("KivBase", "KivSynch", "KivLog", "KivLogRouter", "KivResource", "KivCOMShared")

# Folder: what its files may include. "public:X" are the public headers of X, "system" those of the operating system
# (in files that are named after a system), and anything else the private headers of that folder.
TABLE = {
    "Platform": {"public:Platform", "Platform", "system"},
    "Generics/include": {"public:Platform", "public:Generics"},
    "Generics/core": {"public:Platform", "public:Generics", "Generics/core"},
    "Generics/values": {"public:Platform", "public:Generics", "Generics/core", "Generics/values"},
    "Generics/containers": {"public:Platform", "public:Generics", "Generics/core", "Generics/containers"},
    "Generics/traversal": {"public:Platform", "public:Generics", "Generics/core", "Generics/traversal"},
    "Generics/persistence": {"public:Platform", "public:Generics", "Generics/core", "Generics/values",
                             "Generics/containers", "Generics/traversal", "Generics/persistence"},
    "Storage": {"public:Platform", "public:Generics", "public:Storage", "Storage", "system"},
    "Inspect": {"public:Platform", "public:Generics", "public:Storage", "public:Inspect", "Inspect", "system"},
    "Tools": {"public:Platform", "public:Generics", "public:Storage", "public:Inspect", "Tools", "system"},
    "Examples": {"public:Platform", "public:Generics", "public:Storage", "Examples"},
    "Benchmarks": {"public:Platform", "public:Generics", "public:Storage", "public:Inspect", "Benchmarks", "system"},
}

# What single files may include beyond the table, each for its reason.
ALSO = {
    # The factory makes every kind of node, maps by their number of slots.
    "Generics/core/NodeFactory.cpp": {"containers/MapImpl.h", "containers/SemanticTags.h"},
    # The reuse lists of maps go by their number of slots, which the tag decides.
    "Generics/core/ForestImpl.cpp": {"containers/SemanticTags.h"},
}

# Libraries from elsewhere, and the folders that use them.
OTHERS = {"xxhash.h": "Storage", "xxh_x86dispatch.h": "Storage", "benchmark/benchmark.h": "Benchmarks", "nlohmann/json.hpp": "Inspect",
          "CLI/CLI.hpp": "Tools"}
# What the benchmark beside other libraries sees of them, by the first part of the name; it sees other folders' libraries, too.
PEERS = {"boost", "capnp", "flatbuffers", "google", "msgpack.hpp", "nlohmann", "pugixml.hpp", "rapidjson", "Node.pb.h",
         "Node.capnp.h"}
PEERS_FOLDER = "Benchmarks/peers"
# The sanitizers' interface is the compiler's, and so are names for instructions; one header has each to itself.
COMPILERS = {"sanitizer/asan_interface.h": "Platform/base/Poison.h", "immintrin.h": "Storage/format/XxHash.h"}
# On Windows the platform's record is the system's.
SYSTEM_IN_HEADERS = {"guiddef.h": "Platform/include/KivBase/Guid.h"}

CONCRETE = {f"KivGenerics/{name}.h" for name in (
    "Boolean", "Double", "DoubleSet", "GlobalID", "IdSet", "Integer", "Integer64", "IntegerSet", "Map", "String",
    "StringSet", "Vector")}
FACTORY = "Generics/core/NodeFactory.cpp"

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SYSTEM_FILE = re.compile(r"(Posix|Windows|Elf)\.(cpp|h)$")


def folder_of(path):
    """The row of the table that holds for a file; None for the folders that may include everything."""
    names = path.as_posix().split("/")
    if names[0] == "Generics":
        return "/".join(names[:2])
    return names[0] if names[0] in TABLE else None


def problem_of(project, path, quote, name):
    """What is wrong with one include, or None."""
    folder = folder_of(path)
    top = name.split("/")[0]
    if name in ALSO.get(path.as_posix(), ()):
        return None
    if quote == '"':
        base = "Generics" if folder.startswith("Generics") else folder
        target = next((place for place in (f"{base}/{name}", (path.parent / name).as_posix())
                       if project.exists(place)), None)
        if target is None:
            return f'"{name}" is no private header that can be seen here; public headers go in <>'
        target_folder = folder_of(project.root.__class__(target))
        return None if target_folder in TABLE[folder] else f"{folder} may not see {target_folder}"
    if top in PLATFORM_NAMES or top in ("KivGenerics", "KivStorage", "KivInspect"):
        owner = "Platform" if top in PLATFORM_NAMES else top[3:]
        return None if f"public:{owner}" in TABLE[folder] else f"{folder} may not see {owner}"
    if top in PEERS and path.parent.as_posix() == PEERS_FOLDER:
        return None
    if name in OTHERS:
        return None if folder == OTHERS[name] else f"{name} is for {OTHERS[name]} alone"
    if name in COMPILERS or name in SYSTEM_IN_HEADERS:
        place = {**COMPILERS, **SYSTEM_IN_HEADERS}[name]
        return None if path.as_posix() == place else f"{name} is for {place} alone"
    if re.fullmatch(r"[a-z_]+", name):
        return None
    if "system" in TABLE[folder] and SYSTEM_FILE.search(path.name):
        return None
    return f"<{name}> is the system's: only files that are named after it, of Platform, Storage, Inspect, Tools or Benchmarks, see it"


def check(project):
    problems = []
    for path in project.files(".h", ".cpp"):
        if folder_of(path) not in TABLE:
            if path.parts[0] == "Generics":
                problems.append(f"{path}: the include table has no row for this folder")
            continue
        concrete = set()
        for number, line in enumerate(project.text(path).splitlines(), 1):
            found = INCLUDE.match(line)
            if not found:
                continue
            problem = problem_of(project, path, *found.groups())
            if problem:
                problems.append(f"{path}:{number}: {problem}")
            concrete |= {found.group(2)} & CONCRETE
        # The public texts of values need every kind, too; that header is the users', not the library's.
        if path.parts[0] == "Generics" and path.parts[1] not in ("include", "traversal", "persistence") \
                and path.as_posix() != FACTORY and len(concrete) > 6:
            problems.append(f"{path}: includes {len(concrete)} concrete classes; only the node factory knows them all")
    return problems


def self_test(scratch):
    write(scratch, **{
        "Generics/include/KivGenerics/Node.h": "#include <string>\n#include <KivBase/Buffer.h>\n",
        "Generics/core/TreeImpl.h": "#include <KivGenerics/Node.h>\n",
        "Generics/core/Bad.cpp": '#include "values/Leaf.h"\n#include <windows.h>\n',
        "Generics/core/Many.cpp": "".join(f"#include <{name}>\n" for name in sorted(CONCRETE)),
        "Generics/values/Leaf.h": '#include "core/TreeImpl.h"\n',
        "Generics/traversal/Bad.cpp": '#include "values/Leaf.h"\n',
        "Generics/other/File.cpp": "",
        "Storage/Bad.cpp": '#include "core/TreeImpl.h"\n#include <unistd.h>\n',
        "Storage/GoodPosix.cpp": "#include <unistd.h>\n#include <xxhash.h>\n",
        "Tests/core/Test.cpp": '#include "core/TreeImpl.h"\n',
    })
    return expect(check(Project(scratch)),
                  "Generics/core/Bad.cpp:1: Generics/core may not see Generics/values",
                  "Generics/core/Bad.cpp:2: <windows.h>",
                  "Generics/core/Many.cpp: includes 12 concrete classes",
                  "Generics/traversal/Bad.cpp:1: Generics/traversal may not see Generics/values",
                  "Generics/other/File.cpp: the include table has no row",
                  'Storage/Bad.cpp:1: "core/TreeImpl.h" is no private header',
                  "Storage/Bad.cpp:2: <unistd.h>")
