"""How figures are written, and what is read out of the programs' results."""


def with_unit(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def with_range(ratio):
    return f"{ratio['median']:.2f} ({ratio['least']:.2f} to {ratio['greatest']:.2f})"


class Race:
    """One line of the table: ours, the floor, and the fastest of the peers, if there are any."""

    def __init__(self, result):
        self.section = result["section"]
        self.what = result["what"]
        self.size = result["size"]
        self.ours, self.floor = result["ways"][0], result["ways"][1]
        self.peers = result["ways"][2:]
        self.aim = result.get("aim")
        self.must_beat_peers = result["mustBeatPeers"]

    def fastest_peer(self):
        return min(self.peers, key=lambda peer: peer["nanoseconds"]["median"], default=None)

    def is_met(self):
        """Whether the medians are within the aim; None without one."""
        if self.aim is None:
            return None
        return self.floor["ratio"]["median"] <= self.aim

    def is_beaten(self):
        """Whether a peer is faster, by more than the measurement can tell."""
        peer = self.fastest_peer()
        return self.must_beat_peers and peer is not None and peer["ratio"]["median"] > 1.05


def races_of(figures):
    return [Race(result) for result in figures["results"]]
