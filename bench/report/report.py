"""Puts the figures of the programs together: report.py FOLDER [--document FILE] [--note TEXT]

Reads FOLDER/*.part.json, writes FOLDER/bench.json, and prints the table. With --document the table is written between the two
marks of that file, and the pictures are drawn from it: see draw.py.
"""

import argparse
import json
import pathlib

from draw import write
from figures import races_of
from page import BEGIN, END
from table import AMOUNTS_HEAD, HEAD, amount_rows, markdown_table, race_rows, text_table


def read_parts(folder, note):
    figures = {"note": note, "results": [], "amounts": []}
    for name in ("inner", "module", "memory", "host"):
        part = json.loads((folder / f"{name}.part.json").read_text(encoding="utf-8"))
        figures["results"] += part["results"]
        figures["amounts"] += part["amounts"]
    return figures


def write_into(document, text):
    before, rest = document.read_text(encoding="utf-8").split(BEGIN)
    after = rest.split(END)[1]
    document.write_text(f"{before}{BEGIN}\n{text}\n{END}{after}", encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--document", type=pathlib.Path)
    parser.add_argument("--note", default="")
    arguments = parser.parse_args()
    figures = read_parts(arguments.folder, arguments.note)
    (arguments.folder / "bench.json").write_text(json.dumps(figures, indent=1) + "\n", encoding="utf-8")
    races = races_of(figures)
    print(text_table(HEAD, race_rows(races)))
    print()
    print(text_table(AMOUNTS_HEAD, amount_rows(figures["amounts"])))
    if arguments.document:
        tables = [
            arguments.note,
            markdown_table(HEAD, race_rows(races)),
            markdown_table(AMOUNTS_HEAD, amount_rows(figures["amounts"])),
        ]
        write_into(arguments.document, "\n\n".join(tables))
        write(arguments.document)


if __name__ == "__main__":
    main()
