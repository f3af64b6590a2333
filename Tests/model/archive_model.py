#!/usr/bin/env python3
"""Writes and reads trees as archives a second time, and compares with what the library did.

Each line of the input is one tree in JSON: what it is, the calls that the library made to save it, and the tree that the
library loads from them. The rules here are those of the file format, put down without a look at the library's code.

usage: archive_model.py < trees; the last line is "N trees, N of them loaded", and the status 1 where anything differs.
"""

import json
import sys

INTEGER, GLOBAL_ID, STRING, DOUBLE, BOOLEAN, VECTOR, MAP = range(1, 8)
INTEGER_SET, ID_SET, STRING_SET, DOUBLE_SET, INTEGER64 = range(8, 13)
SET_TAGS = {INTEGER_SET: 1035, DOUBLE_SET: 1036, ID_SET: 1037, STRING_SET: 1038}
NOT_IMPLEMENTED = 0x80004001 - (1 << 32)
GREATEST_KEY = 0x1FFFFFFF


class Refused(Exception):
    """The calls are no tree."""


def is_composite(node):
    return node["kind"] in (VECTOR, MAP)


# Which nodes are saved.

def push(node, derived):
    node["derived"] = derived
    if node["kind"] == VECTOR:
        for child in node["children"]:
            push(child, derived)


def derive(node):
    """Sets the derived temporality of a node and all below it."""
    own = node["own"]
    if not is_composite(node):
        node["derived"] = 2 if own == 1 else own
        return node["derived"]
    least = min([4] + [derive(child) for child in node["children"]])
    node["derived"] = least if own == 1 else own
    if node["kind"] == VECTOR:
        push(node, node["derived"])
    return node["derived"]


# Values as calls.

def long_call(number):
    return f"Long {number & 0xFFFFFFFF:08X}"


def double_call(bits):
    return f"Double {bits}"


def id_call(words):
    rest = b"".join(word.to_bytes(4, "little") for word in words[2:])
    return f"Guid {words[0]:08X}-{words[1] & 0xFFFF:04X}-{words[1] >> 16:04X}-{rest.hex().upper()}"


def text_call(units):
    plain = [0x20 <= unit < 0x7F and unit not in (0x22, 0x5C) for unit in units]
    return 'Text "' + "".join(chr(unit) if ok else f"\\u{unit:04X}" for unit, ok in zip(units, plain)) + '"'


ELEMENT_CALLS = {INTEGER_SET: long_call, DOUBLE_SET: double_call, ID_SET: id_call, STRING_SET: text_call}


def encode_leaf(node):
    kind, value = node["kind"], node["value"]
    if kind in SET_TAGS:
        elements = [ELEMENT_CALLS[kind](each) for each in value]
        return [f"Begin {SET_TAGS[kind]:04X}", long_call(len(value)), *elements, "End"]
    if kind == INTEGER64:
        return [long_call(value), long_call(value >> 32)]
    return [{INTEGER: long_call, BOOLEAN: long_call, DOUBLE: double_call, GLOBAL_ID: id_call, STRING: text_call}[kind](value)]


# Headers.

def words(packed):
    packed = packed + b"\0" * (-len(packed) % 4)
    return [long_call(int.from_bytes(packed[i:i + 4], "big")) for i in range(0, len(packed), 4)]


def type_byte(node):
    return 0 if is_composite(node) else (node["own"] << 6 | node["kind"]) & 0xFF


def packed_tag(tag):
    if tag < 0:
        return b""
    return tag.to_bytes(2, "big") if tag < 0x8000 else (tag | 1 << 31).to_bytes(4, "big")


def packed_count(count):
    if count < 0x80:
        return count.to_bytes(1, "big")
    return (count | 0x8000).to_bytes(2, "big") if count < 0x8000 else count.to_bytes(4, "big")


def packed_key(node):
    index, leaf = node["index"], not is_composite(node)
    if index < 64:
        key = (index | leaf << 7).to_bytes(1, "big")
    elif index < 8192:
        key = (index | 1 << 14 | leaf << 15).to_bytes(2, "big")
    else:
        key = (index | 3 << 29 | leaf << 31).to_bytes(4, "big")
    return key + (bytes([type_byte(node)]) if leaf else b"")


def begin(node, count):
    kind = node["kind"] if count < 0x8000 else node["kind"] + 504
    return f"Begin {(node['own'] << 9 | kind) & 0xFFFF:04X}"


# Composites.

def encode(node, limit):
    if node["kind"] == VECTOR:
        return encode_vector(node, limit)
    return encode_map(node, limit, map_order(node, limit)) if node["kind"] == MAP else encode_leaf(node)


def within(node, limit):
    return [child for child in node["children"] if child["derived"] <= limit]


def encode_vector(node, limit):
    count = len(within(node, limit))
    header = count.to_bytes(2 if count < 0x8000 else 4, "big")
    header += bytes([type_byte(node["children"][0]) if count else 0])
    # With transient nodes no element is left out.
    written = node["children"] if limit == 3 else within(node, limit)
    return [begin(node, count), *words(header), *(call for child in written for call in encode(child, limit)), "End"]


def map_order(node, limit):
    """Leaves before composites, and of each those in slots before the others, which is the order of the indexes."""
    return sorted(within(node, limit), key=lambda child: (is_composite(child), child["index"]))


def encode_map(node, limit, written):
    count = len(within(node, limit))
    header = packed_tag(node["tag"]) + packed_count(count) + b"".join(map(packed_key, written))
    return [begin(node, count), *words(header), *(call for child in written for call in encode(child, limit)), "End"]


def is_open(slot, limit, flags):
    return limit == 2 or slot > 2 or flags & (0x11, 0x02, 0x08)[slot] != 0


def encode_tree(root, limit, flags):
    """The result of a save and its calls."""
    calls = ["Begin 0000", long_call(0)]
    if root and derive(root) <= limit:
        if root["kind"] != MAP:
            return NOT_IMPLEMENTED, calls
        written = [child for child in within(root, limit) if is_composite(child) and child["index"] < root["slots"]
                   and is_open(child["index"], limit, flags)]
        calls += encode_map(root, limit, written)
    return 0, calls + ["End"]


# Reading.

class Reader:
    """Takes calls one by one, and bytes from words."""

    def __init__(self, calls):
        self.calls, self.next, self.word, self.left = calls, 0, 0, 0

    def take(self, name):
        call = self.calls[self.next] if self.next < len(self.calls) else "nothing"
        if not call.startswith(name):
            raise Refused(f"{call} instead of {name}")
        self.next += 1
        return call[len(name) + 1:]

    def long(self):
        return int(self.take("Long"), 16)

    def bytes(self, count):
        value = 0
        for _ in range(count):
            if self.left == 0:
                self.word, self.left = self.long(), 4
            self.left -= 1
            value = value << 8 | self.word >> 8 * self.left & 0xFF
        return value

    def peek(self):
        if self.left == 0:
            self.word, self.left = self.long(), 4
        return self.word >> 8 * (self.left - 1) & 0xFF

    def realign(self):
        self.left = 0


def signed(number):
    return number - (1 << 32) if number >> 31 else number


def read_text(quoted):
    units, i = [], 1
    while i < len(quoted) - 1:
        escaped = quoted[i] == "\\"
        units.append(int(quoted[i + 2:i + 6], 16) if escaped else ord(quoted[i]))
        i += 6 if escaped else 1
    return units


def read_id(text):
    first, second, third, rest = text.split("-")
    rest = bytes.fromhex(rest)
    return [int(first, 16), int(third, 16) << 16 | int(second, 16), int.from_bytes(rest[:4], "little"),
            int.from_bytes(rest[4:], "little")]


def read_value(reader, kind):
    if kind in (INTEGER, INTEGER_SET):
        return signed(reader.long())
    if kind == BOOLEAN:
        return int(reader.long() != 0)
    if kind == INTEGER64:
        low = signed(reader.long())
        return (signed(reader.long()) << 32) + low
    if kind in (DOUBLE, DOUBLE_SET):
        return reader.take("Double")
    return read_id(reader.take("Guid")) if kind in (GLOBAL_ID, ID_SET) else read_text(reader.take("Text"))


def read_leaf(reader, kind):
    if kind not in SET_TAGS:
        return read_value(reader, kind)
    if int(reader.take("Begin"), 16) != SET_TAGS[kind]:
        raise Refused("another set")
    value = [read_value(reader, kind) for _ in range(reader.long())]
    reader.take("End")
    return value


def read_object(reader, index):
    """A composite with its object around it."""
    code = int(reader.take("Begin"), 16)
    kind, own = code & 0x1FF, code >> 9 & 7
    long_count = kind in (510, 511)
    kind -= 504 if long_count else 0
    node = {"kind": kind, "own": own, "tag": 1, "index": index, "children": []}
    if kind == MAP:
        tag = reader.bytes(4) & 0x7FFFFFFF if reader.peek() & 0x80 else reader.bytes(2)
        # A map that is made with tag 0 is one for which no tag was asked.
        node["tag"] = tag or 1
        read_map(reader, node, long_count)
    elif kind == VECTOR:
        read_vector(reader, node, long_count)
    else:
        raise Refused("an object of no composite")
    reader.take("End")
    return node


def read_child(reader, index, code):
    if code == 0:
        return read_object(reader, index)
    kind = code & 63
    return {"kind": kind, "own": code >> 6, "tag": 1, "index": index, "value": read_leaf(reader, kind), "children": []}


def read_vector(reader, node, long_count):
    count = reader.bytes(4 if long_count else 2)
    code = reader.bytes(2) >> 8
    reader.realign()
    node["children"] = [read_child(reader, index, code) for index in range(count)]


def read_map(reader, node, long_count):
    count = reader.bytes(4) if long_count else (reader.bytes(2) & 0x7FFF if reader.peek() & 0x80 else reader.bytes(1))
    keys = [read_key(reader) for _ in range(count)]
    reader.realign()
    node["children"] = sorted((read_child(reader, index, code) for index, code in keys), key=lambda each: each["index"])


def read_key(reader):
    first = reader.peek()
    if not first & 0x40:
        index = reader.bytes(1) & 0x7F
    else:
        index = reader.bytes(4) & GREATEST_KEY if first & 0x20 else reader.bytes(2) & 0x1FFF
    return index, reader.bytes(1) if first & 0x80 else 0


def read_tree(calls):
    reader = Reader(calls)
    reader.take("Begin")
    reader.long()
    root = read_object(reader, -1) if calls[reader.next].startswith("Begin") else None
    reader.take("End")
    return root


# What a save writes but no load understands.

def is_regular(node, limit):
    """Whether what is below a node comes back at all."""
    children = node["children"] if node["kind"] == VECTOR else within(node, limit)
    if node["kind"] == MAP and not 0 <= node["tag"] <= 0x7FFFFFFF:
        return False
    if node["kind"] == VECTOR and len({child["kind"] for child in children}) > 1:
        return False
    return all(is_regular(child, limit) for child in children)


def loads(root, limit, flags):
    if not root or root["derived"] > limit:
        return True
    in_place = all(is_composite(child) and child["index"] < root["slots"] and is_open(child["index"], limit, flags)
                   for child in within(root, limit))
    return in_place and is_regular(root, limit)


def bare(node):
    """A node without what is not saved; tags below 1 come back as they are."""
    return node and {**{key: node[key] for key in ("kind", "own", "tag", "index")}, "value": node.get("value"),
                     "children": [bare(child) for child in node["children"]]}


def check(case):
    """What differs, and whether the tree was read as well."""
    limit = 3 if case["transient"] else 2
    result, calls = encode_tree(case["tree"], limit, case["flags"])
    if (result, calls) != (case["result"], case["calls"]):
        return f"saved otherwise: {result} {calls}", False
    if result != 0 or not loads(case["tree"], limit, case["flags"]):
        return None, False
    root = read_tree(case["calls"])
    if case["loadResult"] != 0 or bare(root) != bare(case["loaded"]):
        return f"loaded otherwise: {bare(root)}", True
    return None, True


def main():
    count = loaded = 0
    for line in sys.stdin:
        case = json.loads(line)
        problem, read = check(case)
        if problem:
            print(f"{problem}\nthe library: {line}")
            return 1
        count, loaded = count + 1, loaded + read
    print(f"{count} trees, {loaded} of them loaded")
    return 0 if loaded > 0 else 1


sys.exit(main())
