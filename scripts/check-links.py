#!/usr/bin/env python3
"""check-links.py [PACKAGE]: checks every link of the project's pages (*.md), or of those of an unpacked package: the file has to
be there, and so has the heading behind a "#".

Links to other machines are not followed. A page of docs/package/ is written for its place in the package.
"""
import collections
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

LINK = re.compile(r"\[(?:[^\[\]]|\[[^\[\]]*\])*\]\(<?([^()\s<>]+)>?(?:\s+\"[^\"]*\")?\)")
DEFINITION = re.compile(r"^ {0,3}\[[^\]]+\]:\s+(\S+)", re.MULTILINE)
HEADING = re.compile(r"^ {0,3}#{1,6}\s+(.*?)\s*#*\s*$")
FENCE = re.compile(r"^ *(```|~~~)")
ELSEWHERE = re.compile(r"^[a-z][a-z0-9+.-]*:")


def prose(path):
    """A page's lines, those of code blocks empty."""
    fence = None
    for line in path.read_text(encoding="utf-8").splitlines():
        mark = FENCE.match(line)
        if mark and fence in (None, mark[1]):
            fence = None if fence else mark[1]
            line = ""
        yield "" if fence else line


def headings(path):
    """The names by which links reach a page's headings: lower case, blanks as hyphens, no other signs; a second one of the
    same name has a number."""
    seen = collections.Counter()
    names = set()
    for line in prose(path):
        match = HEADING.match(line)
        if match:
            text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", match[1])
            name = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
            names.add(f"{name}-{seen[name]}" if seen[name] else name)
            seen[name] += 1
    return names


def fault_of(root, page, target):
    """What is wrong with a link, None when it leads somewhere."""
    if ELSEWHERE.match(target):
        return None
    file, _, heading = target.partition("#")
    path = (page.parent / file).resolve() if file else page
    if not path.exists():
        return f"no such file: {target}"
    if not path.is_relative_to(root):
        return f"leads out of the folder: {target}"
    if heading and path.suffix == ".md" and heading not in headings(path):
        return f"no such heading: {target}"
    return None


def links(page):
    """Each link with its line. Its text, and a piece of code, may go on in the next line."""
    text = re.sub(r"`[^`]*`", lambda code: "`" + "\n" * code[0].count("\n") + "`", "\n".join(prose(page)))
    for kind in (LINK, DEFINITION):
        for match in kind.finditer(text):
            yield text.count("\n", 0, match.start(1)) + 1, match[1]


def pages_of_project():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split("\n")
    return [ROOT / name for name in listed if name and not name.startswith("docs/package/") and (ROOT / name).exists()]


def main():
    package = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else None
    root = package or ROOT
    pages = sorted(package.rglob("*.md")) if package else pages_of_project()
    faults = []
    for page in pages:
        for number, target in links(page):
            fault = fault_of(root, page, target)
            if fault:
                faults.append(f"{page.relative_to(root)}:{number}: {fault}")
    print("\n".join(faults), end="\n" if faults else "", file=sys.stderr)
    return 1 if faults or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
