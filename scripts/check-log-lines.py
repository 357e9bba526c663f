#!/usr/bin/env python3
"""Compares docs/LOG_LINES.md with the texts in the sources that write lines, in both directions.

A text of the sources is every string literal with a blank in it, and every one on the line of a call that logs. The page
shows a value as <...>. A text that is missing in the page fails the check, and so does a line of the page's tables that no
source can write.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "LOG_LINES.md"
FOLDERS = ("dispatcher", "msgbus", "property", "policy", "scheduler", "updater", "services", "loglib")
# Their texts are no lines: names that a compiler gives, and the text that a module is handed.
NOT_LINES = ("dispatcher/EntryPoint.h", "policy/CPolicyDump.cpp")

LITERAL = re.compile(r'L?(?:R"\((?P<raw>.*?)\)"|"(?P<plain>(?:[^"\\\n]|\\.)*)")')
CONVERSION = re.compile(r"%l?[dsp]")
LOGGING = re.compile(r"\b(?:LogFailedStep|NyClientLog|WriteBridgeLog|Write)\(")
NO_LINE = re.compile(r"\bthrow\b|\bstatic_assert\b|^#include")
PLACEHOLDER = re.compile(r"<[^<>]+>")


def literals():
    """Each literal of the sources with its place, and whether it has to be in the page."""
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).rglob("*.[ch]*")):
            name = path.relative_to(ROOT).as_posix()
            if name in NOT_LINES:
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                line = re.sub(r"(^|\s)//.*", "", line)
                if NO_LINE.search(line):
                    continue
                for match in LITERAL.finditer(line):
                    text = match["raw"] if match["raw"] is not None else match["plain"].replace("\\\\", "\\")
                    yield f"{name}:{number}", text, " " in text or bool(LOGGING.search(line))


def pattern_of(text):
    """Finds the text in the page, with a value or its place in the place of each conversion."""
    # Blanks at the ends are between other parts of a line, or cannot be seen. A "%s" of a wide text is never replaced, and
    # stands in the page as it is.
    text = text.strip()
    value = r"(?:<[^<>\n]+>|[^<>\n]+?)"
    return re.escape(text) + "|" + value.join(re.escape(piece) for piece in CONVERSION.split(text))


def main():
    spans = re.findall(r"`([^`\n]+)`", PAGE.read_text(encoding="utf-8"))
    page = "\n".join(spans)
    faults = []
    known = set()
    for place, text, is_line in literals():
        known.update(piece for piece in CONVERSION.split(text) if piece)
        known.add(text)
        if is_line and not re.search(pattern_of(text), page):
            faults.append(f"{place}: docs/LOG_LINES.md lacks \"{text}\"")

    # What the sources write is put together from their texts, with values between them.
    written = re.compile("(?:" + "|".join(re.escape(text) for text in sorted(known, key=len, reverse=True)) + ")+")
    for number, line in enumerate(PAGE.read_text(encoding="utf-8").splitlines(), 1):
        first = re.match(r"\| `([^`]+)` \|", line)
        for piece in PLACEHOLDER.split(first[1]) if first else ():
            if piece and not written.fullmatch(piece):
                faults.append(f"docs/LOG_LINES.md:{number}: no source writes \"{piece}\"")
    print("\n".join(faults), end="\n" if faults else "", file=sys.stderr)
    return 1 if faults or not known else 0


if __name__ == "__main__":
    sys.exit(main())
