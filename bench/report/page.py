"""The figures of docs/PERFORMANCE.md, read from its table."""

import re

BEGIN, END = "<!-- figures: written by scripts/bench.sh -->", "<!-- end of figures -->"
RANGE = re.compile(r"^([0-9.]+) \(([0-9.]+) to ([0-9.]+)\)$")


class Row:
    """One line of the table: the ratio to the floor, its median and its range, and the aim if there is one."""

    def __init__(self, name, ratio, aim):
        self.name = name
        self.median, self.least, self.greatest = (float(number) for number in RANGE.match(ratio).groups())
        self.aim = float(aim.partition(":")[0]) if aim else None

    def is_missed(self):
        return self.aim is not None and self.median > self.aim


def rows_of(document):
    """The lines that have a ratio, by their names."""
    table = document.read_text(encoding="utf-8").split(BEGIN)[1].split(END)[0]
    rows = {}
    for line in table.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if len(cells) >= 5 and RANGE.match(cells[3]):
            rows[cells[0]] = Row(cells[0], cells[3], cells[4])
    return rows
