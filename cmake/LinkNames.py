#!/usr/bin/env python3
"""Doxygen's filter of its input, LinkNames.py FILE: prints the file with the names of the bridge as links, which doxygen makes of
few names by itself. In a header they are words of a comment, in a page pieces of code."""
import pathlib
import re
import sys

# The functions, by how their names begin; and what doxygen needs the whole name of outside its namespace.
FUNCTION = (r"VsMsgbus(?:Entry|Exit|Service\w+)|VsKitMsgbus(?:Set|Remove|Free|Encrypt|Decrypt|Hash)[A-Z]\w+|VsKitEnforceLocalPolicy"
            r"|VsKitHealthCheckRegisterCB|UpdateMsgbusTaskStatus|GetMsgbusClient|ny_(?:dl|sim|setup)_\w*[a-z]")
TYPES = {name: f"VsKitMsgbus::{name}" for name in (
    "INYCollectProperties", "INYEnforcePolicy", "INYTaskEnforcer", "INYUpdateNotifyCallback", "ILogSink", "lpc_buffer")}
TYPES["Machine"] = "vsmsgbus::testing::Machine"
LAYER = r"vsmsgbus::(?:testing::)?[A-Z]\w+"
WORD = re.compile(rf"(?<![\w:@#.`])({FUNCTION})(?![\w(:`.])")
CODE = re.compile(rf"`((?:{FUNCTION})|{'|'.join(TYPES)}|{LAYER})`")


def linked_header(text):
    return re.sub(r"^\s*///.*|///<.*", lambda comment: WORD.sub(r"@ref \1", comment[0]), text, flags=re.MULTILINE)


def linked_page(text):
    def link(code):
        return f'<code>@ref {TYPES.get(code[1], code[1])} "{code[1]}"</code>'

    # What stands between two fences is a block of code.
    blocks = re.split(r"(^```.*?^```$)", text, flags=re.MULTILINE | re.DOTALL)
    return "".join(block if block.startswith("```") else CODE.sub(link, block) for block in blocks)


def main():
    file = pathlib.Path(sys.argv[1])
    text = file.read_text(encoding="utf-8")
    sys.stdout.write(linked_page(text) if file.suffix in (".md", ".dox") else linked_header(text))


if __name__ == "__main__":
    main()
