"""The scaling curves as one SVG: a panel for each kind of work, both axes logarithmic."""

import math

WIDTH, HEIGHT, MARGIN, RIGHT = 360, 260, 60, 30
COLOURS = ["#1f6feb", "#d1242f", "#1a7f37", "#9a6700"]


class Curve:
    def __init__(self, name, colour, is_floor, points):
        self.name = name
        self.colour = colour
        self.is_floor = is_floor
        self.points = points


def power_text(exponent):
    return f"{10 ** exponent:,}" if exponent >= 0 else f"{10.0 ** exponent:.0e}"


class Panel:
    def __init__(self, title, x_label, curves):
        self.title = title
        self.x_label = x_label
        self.curves = curves
        xs = [x for curve in curves for x, _ in curve.points]
        ys = [y for curve in curves for _, y in curve.points]
        self.x_range = (math.floor(math.log10(min(xs))), max(1, math.ceil(math.log10(max(xs)))))
        self.y_range = (math.floor(math.log10(min(ys))), math.ceil(math.log10(max(ys))))

    def place(self, x, y):
        def along(value, limits, length):
            return (math.log10(value) - limits[0]) / max(1, limits[1] - limits[0]) * length

        return (
            MARGIN + along(x, self.x_range, WIDTH - MARGIN - RIGHT),
            HEIGHT - MARGIN - along(y, self.y_range, HEIGHT - MARGIN - 36),
        )

    def axes(self):
        for exponent in range(self.x_range[0], self.x_range[1] + 1):
            x, bottom = self.place(10.0**exponent, 10.0 ** self.y_range[0])
            _, top = self.place(10.0**exponent, 10.0 ** self.y_range[1])
            yield f'<line x1="{x:.1f}" y1="{bottom:.1f}" x2="{x:.1f}" y2="{top:.1f}" stroke="#ddd"/>'
            yield f'<text x="{x:.1f}" y="{bottom + 14:.1f}" text-anchor="middle">{power_text(exponent)}</text>'
        for exponent in range(self.y_range[0], self.y_range[1] + 1):
            left, y = self.place(10.0 ** self.x_range[0], 10.0**exponent)
            right, _ = self.place(10.0 ** self.x_range[1], 10.0**exponent)
            yield f'<line x1="{left:.1f}" y1="{y:.1f}" x2="{right:.1f}" y2="{y:.1f}" stroke="#ddd"/>'
            yield f'<text x="{left - 4:.1f}" y="{y + 4:.1f}" text-anchor="end">{power_text(exponent)} ns</text>'

    def drawn(self, left):
        yield f'<g transform="translate({left},0)">'
        yield f'<text x="{WIDTH / 2}" y="18" text-anchor="middle" font-weight="bold">{self.title}</text>'
        yield from self.axes()
        yield f'<text x="{WIDTH / 2}" y="{HEIGHT - MARGIN + 28}" text-anchor="middle">{self.x_label}</text>'
        for number, curve in enumerate(self.curves):
            places = " ".join("{:.1f},{:.1f}".format(*self.place(x, y)) for x, y in curve.points)
            dashes = ' stroke-dasharray="5 3"' if curve.is_floor else ""
            yield (
                f'<polyline points="{places}" fill="none" stroke="{curve.colour}" stroke-width="2"{dashes}/>'
            )
            x, y = MARGIN + (number % 2) * 150, HEIGHT - 14 + 14 * (number // 2)
            yield f'<line x1="{x}" y1="{y - 4}" x2="{x + 20}" y2="{y - 4}" stroke="{curve.colour}" stroke-width="2"{dashes}/>'
            yield f'<text x="{x + 24}" y="{y}">{curve.name}</text>'
        yield "</g>"


def curves_of(races, section, kinds):
    """A pair of curves, ours and the floor's, for each kind: lines of the table that begin with that word."""
    curves = []
    for colour, kind in zip(COLOURS, kinds):
        lines = [race for race in races if race.section == section and race.size > 0 and race.what.startswith(kind)]
        for name, is_floor in (("ours", False), ("floor", True)):
            points = [
                (race.size, (race.floor if is_floor else race.ours)["nanoseconds"]["median"]) for race in lines
            ]
            if points:
                curves.append(Curve(f"{kind} {name}".strip(), colour, is_floor, points))
    return curves


def write_chart(races, path):
    wanted = [
        ("one property of a request", "properties", "properties", [""]),
        ("one setting of a walk", "settings", "policies", ["walk", "user walk"]),
        ("one setting of a dump", "settings", "policies", ["dump"]),
        ("one conversion", "characters", "conversion", ["to wide", "to narrow"]),
        ("one look-up", "products", "look-up", [""]),
    ]
    panels = []
    for title, x_label, section, kinds in wanted:
        curves = curves_of(races, section, kinds)
        if curves:
            panels.append(Panel(title, x_label, curves))
    height = HEIGHT + 10
    with open(path, "w", encoding="utf-8") as file:
        file.write(
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH * len(panels)}" height="{height}" '
            'font-family="sans-serif" font-size="11">\n<rect width="100%" height="100%" fill="white"/>\n'
        )
        for number, panel in enumerate(panels):
            file.write("\n".join(panel.drawn(number * WIDTH)) + "\n")
        file.write("</svg>\n")
