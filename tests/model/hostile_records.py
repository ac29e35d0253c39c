"""Writes hostile stored records, each after its length and a semicolon: hostile_records.py SEED COUNT

Damages keyed archives as trees, and binary property lists as bytes.
"""
import plistlib
import random
import sys
from plistlib import UID

random.seed(int(sys.argv[1]))
pick, chance, below = random.choice, random.random, random.randrange
CHAINS = [["NSMutableDictionary", "NSDictionary", "NSObject"], ["NSArray", "NSObject"], ["UIColor", "NSObject"],
          ["UIFont", "NSObject"], ["NSString"], ["NSNumber"], ["NSData"], ["UIView", "UIResponder", "NSObject"],
          ["UIWindow"], ["TESMARViewController"], ["NSUserDefaults"], ["Unknown"] * 50 + ["NSArray"], ["Unknown"], []]
DICTIONARY, ARRAY, COLOR, FONT = range(1, 5)  # indexes in the table, which starts with the chains
FIELDS = ["NS.keys", "NS.objects", "NS.string", "NS.bytes", "NS.data", "NS.intval", "NS.dblval", "UIAlpha", "UIRed",
          "UIWhite", "UIColorComponentCount", "UIFontName", "UIFontPointSize", "$class", "$classes", "frame", "subviews"]


def size():  # uniform in its logarithm
    return int(2 ** (14 * chance()))


def record(kind, **fields):
    return {**{key.replace("__", "."): value for key, value in fields.items()}, "$class": UID(kind)}


def color(**other):
    return record(COLOR, UIColorComponentCount=4, UIRed=0.5, UIGreen=chance(), UIBlue=1, UIAlpha=1.0, **other)


def style(objects, extra=()):
    table = objects + [color(), color(), record(FONT, UIFontName="HelveticaNeue", UIFontPointSize=17.5)]
    keys = ["NSColor", "NSBackgroundColor", "NSFont"] + [f"key {i}" for i in range(len(extra))]
    values = [UID(len(objects) + i) for i in range(3)] + list(extra)
    return table + [record(DICTIONARY, NS__keys=keys, NS__objects=values)]


def nasty():
    return pick([
        lambda: UID(pick([0, below(40), size(), 2**64 - 1])), lambda: pick([2**63 - 1, -2**63, 2**64 - 1, -1, 0, 3]),
        lambda: pick([float("nan"), float("inf"), -float("inf"), 1e308, -1e-320, -0.0]), lambda: "x" * size(),
        lambda: "\u00e9" * size(), lambda: "\uE000\uE001" * below(9), lambda: bytes(size()), lambda: bytes(pick([100, 1 << 20])),
        lambda: pick([True, [], {}, ""]), lambda: [UID(below(40))] * size(), lambda: ["k"] * size(),
        lambda: record(below(20)), lambda: {str(i): i for i in range(size() // 8)}])()


def damaged(objects):
    for _ in range(1 + below(3)):
        target = pick(objects)
        if isinstance(target, dict) and chance() < 0.3:
            target["$class"] = UID(1 + below(len(CHAINS)))
        elif isinstance(target, dict) and chance() < 0.8:
            target[pick([*target, pick(FIELDS)])] = nasty()
        else:
            objects[below(len(objects))] = nasty()
    return objects


def bomb(base):
    count, first = 2 + below(pick([8, 600, 6000])), len(base)
    chain = lambda links: [record(ARRAY, NS__objects=links(first + i)) for i in range(count)] + [record(ARRAY, NS__objects=[])]
    leaf = color(**{f"x{i}": i for i in range(size() // 32)})
    name = "n" * size()
    font = record(FONT, UIFontName=name, UIFontPointSize=17.5)
    return pick([
        lambda: style(base + chain(lambda i: [UID(i + 1)]), [UID(first)]),
        lambda: style(base + chain(lambda i: [UID(i + 1)] * pick([2, 64])), [UID(first)]),
        lambda: style(base + chain(lambda i: [UID(i + 1)]), [UID(i) for i in range(first + count, first, -1)]),
        lambda: style(base + chain(lambda i: [UID(first + below(count))]), [UID(first)]),
        lambda: style(base + [leaf] * count, [UID(first + i) for i in range(count)]),
        lambda: style(base + [font] * count, [UID(first + i) for i in range(count)]),
        lambda: style(base + [name, record(ARRAY, NS__objects=[UID(first)] * count)], [UID(first + 1)]),
        lambda: style(base + [record(DICTIONARY, NS__keys=[name], NS__objects=[1])] * count,
                      [UID(first + i) for i in range(count)]),
        lambda: style(base, list(range(count))), lambda: style(base, [bytes(3)] * count),
        lambda: style(base, [color()] * count), lambda: style(base + [str(i) for i in range(count)])])()


def patched(data):
    """Changes offsets, counts, references and the trailer."""
    data = bytearray(data.replace(b"\xe0\x00", b"\xd8\x00"))  # halves of surrogate pairs
    for _ in range(below(4)):
        at = pick([below(len(data)), len(data) - 1 - below(min(len(data), 64))])
        data[at:at + 1 + below(8)] = pick([b"\xff" * 8, b"\0" * 8, b"\xaf\x13" + b"\xff" * 8, b"\xdf\x12\0\1\0\0",
                                           b"\x14" + b"\x7f" * 16, random.randbytes(2), data[:at][-8:]])
    return bytes(data if chance() < 0.8 else data[:1 + below(len(data))])


for _ in range(int(sys.argv[2])):
    table = ["$null"] + [{"$classname": (c or [1])[0], "$classes": c} for c in CHAINS]
    table = pick([style, bomb, lambda base: damaged(style(base)), lambda base: damaged(bomb(base))])(table)
    root = UID(len(table) - 1 if chance() < 0.95 else below(len(table)))
    archive = {"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": root}, "$objects": table}
    data = pick([bytes, bytes, patched])(plistlib.dumps(archive, fmt=plistlib.FMT_BINARY))
    sys.stdout.buffer.write(b"%d;" % len(data) + data)
