"""Every piece of C++ in the documents stands, word for word, in a marked region of an example, which is compiled."""

import re
import textwrap

from project import Project, expect, write

REGION = re.compile(r"^[ \t]*// \[([\w-]+)\]\n(.*?)^[ \t]*// \[/\1\]", re.MULTILINE | re.DOTALL)
FENCE = re.compile(r"^```(?:cpp|c\+\+)\n(.*?)^```", re.MULTILINE | re.DOTALL)
# Shows what it must show; a document without a snippet would pass every comparison.
MUST_SHOW = {"README.md": "quickstart"}


def clean(text):
    return "\n".join(line.rstrip() for line in textwrap.dedent(text).strip("\n").splitlines())


def check(project):
    problems = []
    regions = {}
    for path in project.files(".h", ".cpp", below="Examples"):
        for name, text in REGION.findall(project.text(path)):
            if name in regions:
                problems.append(f"{path}: a region '{name}' stands in another example, too")
            regions[name] = clean(text)
    documents = [path for path in project.files(".md") if path.name == "README.md" or path.parts[0] == "Docs"]
    for path in documents:
        text = project.text(path)
        shown = [clean(each) for each in FENCE.findall(text)]
        for each in shown:
            if each not in regions.values():
                number = text[:text.find(each.splitlines()[0])].count("\n") + 1
                problems.append(f"{path}:{number}: this code is no marked region of an example, or differs from it")
    for path, wanted in MUST_SHOW.items():
        shown = [clean(each) for each in FENCE.findall(project.text(path))] if project.exists(path) else []
        if wanted not in regions or regions[wanted] not in shown:
            problems.append(f"{path}: does not show the region '{wanted}' of the examples")
    return problems


def self_test(scratch):
    write(scratch, **{
        "Examples/A.cpp": "int main() {\n    // [quickstart]\n    int a = 1;\n\n    return a;\n    // [/quickstart]\n}\n",
        "Examples/B.cpp": "// [two]\nint b;\n// [/two]\n",
        "README.md": "```cpp\nint a = 2;\n```\n",
        "Docs/guide.md": "```cpp\nint a = 1;\n\nreturn a;\n```\n\n```cpp\nint b;\n```\n\n```sh\n./demo\n```\n",
    })
    problems = expect(check(Project(scratch)), "README.md:2: this code is no marked region",
                      "README.md: does not show the region 'quickstart'")
    write(scratch, **{"README.md": "```cpp\nint a = 1;\n\nreturn a;\n```\n"})
    return problems + expect(check(Project(scratch)))
