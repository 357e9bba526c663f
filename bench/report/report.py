"""Puts the figures of the programs together: report.py FOLDER [--document FILE --chart FILE] [--note TEXT]

Reads FOLDER/*.part.json, writes FOLDER/bench.json and FOLDER/bench.svg, and prints the table. With --document the table
is written between the two marks of that file, and the chart beside it.
"""

import argparse
import json
import pathlib
import shutil

from chart import write_chart
from figures import races_of
from table import AMOUNTS_HEAD, HEAD, amount_rows, markdown_table, race_rows, text_table

BEGIN, END = "<!-- figures: written by scripts/bench.sh -->", "<!-- end of figures -->"


def read_parts(folder, note):
    figures = {"note": note, "results": [], "amounts": []}
    for name in ("inner", "module", "memory"):
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
    parser.add_argument("--chart", type=pathlib.Path)
    parser.add_argument("--note", default="")
    arguments = parser.parse_args()
    figures = read_parts(arguments.folder, arguments.note)
    (arguments.folder / "bench.json").write_text(json.dumps(figures, indent=1) + "\n", encoding="utf-8")
    races = races_of(figures)
    chart = arguments.folder / "bench.svg"
    write_chart(races, chart)
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
        shutil.copyfile(chart, arguments.chart)


if __name__ == "__main__":
    main()
