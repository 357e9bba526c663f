"""The table, as text for a terminal and as Markdown."""

from figures import with_range, with_unit

HEAD = ["", "ours", "floor", "ours : floor", "aim", "fastest peer", "ours : peer"]
AMOUNTS_HEAD = ["", "ours", "beside it", "aim"]


def answer(is_met):
    return "met" if is_met else "missed"


def race_rows(races):
    for race in races:
        aim = "" if race.aim is None else f"{race.aim:g}: {answer(race.is_met())}"
        row = [
            f"{race.section}: {race.what}",
            with_unit(race.ours["nanoseconds"]["median"]),
            with_unit(race.floor["nanoseconds"]["median"]),
            with_range(race.floor["ratio"]),
            aim,
        ]
        peer = race.fastest_peer()
        if peer is None:
            row += ["", ""]
        else:
            beaten = " (faster)" if race.is_beaten() else ""
            row += [
                f"{peer['name']}, {with_unit(peer['nanoseconds']['median'])}{beaten}",
                with_range(peer["ratio"]),
            ]
        yield row


def amount_text(number, unit):
    if unit == "nanoseconds":
        return with_unit(number)
    return f"{number:,.0f} {unit}" if unit == "bytes" else f"{number:.3g} {unit}"


def amount_rows(amounts):
    for amount in amounts:
        others = []
        for other in amount["others"]:
            unit = "" if other["name"] == "allocations" else amount["unit"]
            others.append(f"{other['name']} {amount_text(other['amount'], unit)}".rstrip())
        aim = f"{amount['aim']}: {answer(amount['isMet'])}" if amount["aim"] else ""
        yield [
            f"{amount['section']}: {amount['what']}",
            amount_text(amount["ours"], amount["unit"]),
            ", ".join(others),
            aim,
        ]


def text_table(head, rows):
    rows = [head] + list(rows)
    widths = [max(len(row[column]) for row in rows) for column in range(len(head))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in rows)


def markdown_table(head, rows):
    lines = [head, ["---"] * len(head)] + list(rows)
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)
