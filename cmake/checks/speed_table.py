"""The table of instructions a node: read, written, and compared with what was counted."""

from project import expect

LIMIT = 0.02
HEAD = """\
# What each operation takes, in instructions a node: of sets, an element; of lookup, path and set, one of them.
# `./check speed` counts anew and compares; `cmake/checks/speed --update "why"` writes this file anew.
"""
COMPILER = "# compiler: "
REASON = "# because: "


class Table:
    """Counts by operation and shape, in order; the compiler that they were made with; why they changed, latest last."""

    def __init__(self, counts, compiler="", reasons=()):
        self.counts = dict(counts)
        self.compiler = compiler
        self.reasons = list(reasons)


def parse(text):
    table = Table({})
    for line in text.splitlines():
        if line.startswith(COMPILER):
            table.compiler = line[len(COMPILER):]
        elif line.startswith(REASON):
            table.reasons.append(line[len(REASON):])
        elif line.strip() and not line.startswith("#"):
            operation, shape, count = line.split()
            table.counts[operation, shape] = float(count)
    return table


def digits(count):
    """Enough of them to see a change of far less than the limit, however small the count."""
    return f"{count:.1f}" if count >= 1000 else f"{count:.2f}" if count >= 10 else f"{count:.5f}"


def text_of(table):
    lines = [f"{operation:<12} {shape:<13} {digits(count):>12}\n" for (operation, shape), count in table.counts.items()]
    reasons = "".join(f"{REASON}{each}\n" for each in table.reasons)
    return f"{HEAD}{COMPILER}{table.compiler}\n{reasons}{''.join(lines)}"


def grown(old, new):
    """By how much, as a part of the old; what was nothing before has grown without limit."""
    return new / old - 1 if old > 0 else float(new > 0)


def compare(listed, counted):
    """A problem, or None, for each operation and shape in the table or counted; both are counts."""
    problems = {}
    for name in listed | counted:
        problems[name] = None
        what = " of ".join(name)
        if name not in counted:
            problems[name] = f"{what} is in the table, and is not counted any more"
        elif name not in listed:
            problems[name] = f"{what} is not in the table: {digits(counted[name])} instructions a node"
        elif abs(change := grown(listed[name], counted[name])) > LIMIT:
            problems[name] = (f"{what} {'has grown' if change > 0 else 'has shrunk'} by {abs(change) * 100:.1f} %: "
                              f"{digits(listed[name])} instructions a node in the table, {digits(counted[name])} now")
    return problems


def renewed(table, counted, compiler, reason, names=()):
    """The table to write, in the order of `names`: with what was counted, and what else it had of them.

    What changed within the limit keeps the lower count: growth must not creep in unseen.
    """
    counts = {}
    for name in names or counted:
        known = [each[name] for each in (table.counts, counted) if name in each]
        if len(known) == 2 and table.compiler == compiler and abs(grown(*known)) <= LIMIT:
            counts[name] = min(known)
        elif known:
            counts[name] = known[-1]
    return Table(counts, compiler, [*table.reasons, reason])


def self_test():
    """What is wrong with this module: it must see every kind of difference, and none where there is none."""
    old = Table({("walk", "a"): 100.0, ("walk", "b"): 100.0, ("walk", "c"): 100.0, ("walk", "d"): 0.01,
                 ("walk", "e"): 1.0}, "g++ 1", ["first"])
    new = {("walk", "a"): 101.9, ("walk", "b"): 102.1, ("walk", "c"): 97.9, ("walk", "d"): 0.0103, ("walk", "f"): 1.0}
    problems = [each for each in compare(old.counts, new).values() if each]
    wrong = expect(problems, "walk of b has grown by 2.1 %: 100.00 instructions a node in the table, 102.10 now",
                   "walk of c has shrunk by 2.1 %", "walk of d has grown by 3.0 %",
                   "walk of e is in the table, and is not counted any more",
                   "walk of f is not in the table: 1.00000 instructions a node")
    table = renewed(old, new, "g++ 1", "second")
    if parse(text_of(table)).__dict__ != table.__dict__:
        wrong.append("reads another table than it has written")
    if table.counts != {**new, ("walk", "a"): 100.0} or table.reasons != ["first", "second"]:
        wrong.append("does not renew a table as it should")
    if renewed(old, {("walk", "b"): 1.0}, "g++ 1", "third", old.counts).counts != {**old.counts, ("walk", "b"): 1.0}:
        wrong.append("does not renew one count alone")
    if renewed(old, new, "g++ 2", "third").counts != new:
        wrong.append("keeps counts of another compiler")
    return wrong
