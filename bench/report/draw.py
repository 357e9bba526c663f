#!/usr/bin/env python3
"""Draws the pictures of a page from its table: draw.py [--check] [DOCUMENT]

The page is docs/PERFORMANCE.md, or DOCUMENT; the pictures stand in the folder performance/ beside it. With --check nothing is
written: it fails when a picture is not that of the table, or is not shown by the page.
"""

import pathlib
import sys

from chart import picture
from page import rows_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
SIZES = [(100, "100"), (1000, "1,000"), (10000, "10,000"), (100000, "100,000"), (1000000, "1,000,000")]
LENGTHS = [(0, "0"), (16, "16"), (256, "256"), (4096, "4,096"), (65536, "65,536")]

# The file, its question, and the lines of the table with their labels. Runs with several threads that meet, whose figures
# vary widely, are in the table alone.
PICTURES = [
    ("calls", "What does a call of the agent through the bridge cost?", [
        (f"{arguments} arguments, {threads} thread{'s' if threads > 1 else ''}",
         f"lazy call: {arguments} arguments, {threads} thread{'s' if threads > 1 else ''}")
        for arguments in (0, 2, 5) for threads in (1, 2)
    ] + [("the first one, of one group", "first call: one group of 66 names"),
         ("the first ones, of all groups", "first call: all 11 groups")]),
    ("conversions", "What does the conversion of a text cost?", [
        (f"to {width}, {label} characters", f"conversion: to {width}, {length} characters")
        for width in ("wide", "narrow") for length, label in LENGTHS
    ]),
    ("properties", "What does a property cost?", [
        ("1 in a request", "properties: 1 property"),
        ("100 in a request", "properties: 100 properties"),
        ("10,000 in a request", "properties: 10000 properties"),
    ]),
    ("walks", "What does a setting cost in a walk?", [
        (f"{kind} of {label} settings", f"policies: {kind} of {size} settings")
        for kind in ("walk", "user walk") for size, label in SIZES
    ]),
    ("dumps", "What does a setting cost in a dump, and a policy in a digest?", [
        (f"dump of {label} settings", f"policies: dump of {size} settings") for size, label in SIZES
    ] + [(f"digest of {label} policies", f"policies: digest of {size} policies") for size, label in SIZES[:3]]),
    ("look-ups", "What does it cost to find the module that is asked?", [
        (f"one of {label} product{'s' if count > 1 else ''}", f"look-up: {count} product{'s' if count > 1 else ''}, 1 thread")
        for count, label in [(1, "1"), (10, "10")] + SIZES[:3]
    ] + [("a gate, entered and left", "look-up: a gate, entered and left")]),
    ("services", "What do the other services, and the life cycle, cost?", [
        ("a task, executed and reported", "services: a task, executed and reported"),
        ("an update notice", "services: an update notice"),
        ("an information read", "services: an information read"),
        ("one call of a module", "module call: one call"),
        ("a walk of one call", "module call: a walk of one call"),
        ("Entry to started", "life cycle: Entry to started"),
        ("last Exit to library released", "life cycle: last Exit to last library released"),
        ("an upgrade", "life cycle: an upgrade, until registered anew"),
        ("the first request after it", "life cycle: the first request after an upgrade"),
        ("LoadLibrary", "loading: LoadLibrary"),
        ("FreeLibrary", "loading: FreeLibrary"),
    ]),
    ("layer", "What does the C++ layer cost beside the plain interfaces?", [
        ("a walk with a visitor", "C++ layer: a visited walk of 1000 settings"),
        ("a range of settings", "C++ layer: a range of 1000 settings"),
    ]),
]


def draw(document):
    """The name and the text of each picture for which the table has figures: the short form has not all."""
    rows = rows_of(document)
    for name, question, lines in PICTURES:
        labelled = [(label, rows[key]) for label, key in lines if key in rows]
        if labelled:
            yield f"{name}.svg", picture(question, labelled)


def faults(document):
    folder = document.parent / "performance"
    page = document.read_text(encoding="utf-8")
    drawn = dict(draw(document))
    for name, svg in drawn.items():
        file = folder / name
        if not file.exists() or file.read_text(encoding="utf-8") != svg:
            yield f"{file} is not drawn from the table: run bench/report/draw.py"
        if f"](performance/{name})" not in page:
            yield f"{document} does not show {name}"
    for file in folder.glob("*"):
        if file.name not in drawn:
            yield f"{file} is no picture of the page"
    if len(drawn) != len(PICTURES):
        yield f"the table has figures for {len(drawn)} of {len(PICTURES)} pictures"


def write(document):
    folder = document.parent / "performance"
    folder.mkdir(exist_ok=True)
    for name, svg in draw(document):
        (folder / name).write_text(svg, encoding="utf-8")


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--check"]
    document = pathlib.Path(arguments[0]) if arguments else ROOT / "docs" / "PERFORMANCE.md"
    if "--check" not in sys.argv:
        write(document)
        return 0
    found = list(faults(document))
    print("\n".join(found), end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
