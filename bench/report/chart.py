"""Pictures of ratios: a small one for each question, with a line for each figure. A page shows them as wide as its column:
at 800 pixels one unit is one pixel, and the smallest text has 13."""

import math

WIDTH, LABELS, NUMBERS, LINE, TOP, BOTTOM = 800, 250, 150, 26, 44, 76
STYLE = """
text { font: 14px sans-serif; fill: #1f2328 }
.small { font-size: 13px }
.question { font-size: 16px; font-weight: bold }
.page { fill: #ffffff }
.grid { stroke: #d1d9e0 }
.one { stroke: #1f2328; stroke-width: 1.5 }
.range { stroke: #0969da; stroke-width: 4; stroke-opacity: 0.35 }
.median { fill: #0969da }
.missed.range { stroke: #bc4c00 }
.missed.median { fill: #bc4c00 }
.aim { stroke: #1a7f37; stroke-width: 3 }
@media (prefers-color-scheme: dark) {
text { fill: #e6edf3 }
.page { fill: #0d1117 }
.grid { stroke: #3d444d }
.one { stroke: #e6edf3 }
.range { stroke: #4493f8; stroke-opacity: 0.5 }
.median { fill: #4493f8 }
.missed.range { stroke: #f0883e }
.missed.median { fill: #f0883e }
.aim { stroke: #3fb950 }
}
"""


class Scale:
    """A linear axis that has room for all rows, and for 1."""

    def __init__(self, rows):
        low = min([1.0] + [row.least for row in rows])
        high = max([1.0] + [row.greatest for row in rows] + [row.aim for row in rows if row.aim])
        self.step = next(step for step in (0.1, 0.2, 0.25, 0.5, 1, 2, 5) if (high - low) / step <= 8)
        self.low = math.floor(low / self.step) * self.step
        self.high = math.ceil(high / self.step) * self.step

    def ticks(self):
        count = round((self.high - self.low) / self.step)
        return [self.low + number * self.step for number in range(count + 1)]

    def place(self, ratio):
        return LABELS + (ratio - self.low) / (self.high - self.low) * (WIDTH - LABELS - NUMBERS)


def text(x, y, words, anchor="start", kind=""):
    words = words.replace("&", "&amp;").replace("<", "&lt;")
    kind = f' class="{kind}"' if kind else ""
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}"{kind}>{words}</text>'


def line(x1, y1, x2, y2, kind):
    return f'<line class="{kind}" x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}"/>'


def median(x, y, is_missed):
    """A dot, or a diamond for one above its aim, which is told without colours, too."""
    if is_missed:
        return f'<path class="missed median" d="M{x:.1f} {y - 7:.1f}l7 7l-7 7l-7 -7z"/>'
    return f'<circle class="median" cx="{x:.1f}" cy="{y:.1f}" r="5"/>'


def drawn_rows(scale, labelled):
    for number, (label, row) in enumerate(labelled):
        y = TOP + LINE * (number + 0.5)
        missed = "missed " if row.is_missed() else ""
        yield text(LABELS - 14, y + 5, label, "end")
        yield line(scale.place(row.least), y, scale.place(row.greatest), y, f"{missed}range")
        if row.aim:
            yield line(scale.place(row.aim), y - 10, scale.place(row.aim), y + 10, "aim")
        yield median(scale.place(row.median), y, row.is_missed())
        yield text(WIDTH - NUMBERS + 14, y + 5, f"{row.median:.2f} ({row.least:.2f} to {row.greatest:.2f})", kind="small")


def legend(y, has_aim, has_missed):
    yield text(LABELS, y, "1: as long as the floor", kind="small")
    x = LABELS + 158
    yield median(x, y - 5, False)
    yield text(x + 10, y, "median, with its range", kind="small")
    x += 170
    if has_aim:
        yield line(x, y - 14, x, y + 4, "aim")
        yield text(x + 8, y, "aim", kind="small")
        x += 50
    if has_missed:
        yield median(x, y - 5, True)
        yield text(x + 12, y, "above its aim", kind="small")


def picture(question, labelled):
    """The SVG of a question; `labelled` are pairs of a label and a row."""
    rows = [row for _, row in labelled]
    scale = Scale(rows)
    bottom = TOP + LINE * len(rows)
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{bottom + BOTTOM}" '
        f'viewBox="0 0 {WIDTH} {bottom + BOTTOM}" role="img">',
        f"<title>{question}</title>",
        f"<style>{STYLE}</style>",
        '<rect class="page" width="100%" height="100%"/>',
        text(14, 26, question, kind="question"),
    ]
    for tick in scale.ticks():
        kind = "one" if abs(tick - 1) < 1e-9 else "grid"
        lines.append(line(scale.place(tick), TOP - 4, scale.place(tick), bottom + 4, kind))
        lines.append(text(scale.place(tick), bottom + 22, f"{tick:g}", "middle", "small"))
    lines += drawn_rows(scale, labelled)
    lines += legend(bottom + 56, any(row.aim for row in rows), any(row.is_missed() for row in rows))
    lines.append("</svg>")
    return "\n".join(lines) + "\n"
