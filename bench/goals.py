"""The rows of the table, and what each is to reach.

A goal is a text and a function that looks at the medians of one work, by program, and says whether the goal is
reached and by what number; None if the peer was not measured.
"""
from dataclasses import dataclass
from typing import Callable

OURS = "tavrinconfig"
CUTTING = "cutting into lines"
BARE = "bare program"
PRESCRIBED = "the prescribed calls"
LEAST = (CUTTING,)  # no peers: what the work costs at least


@dataclass
class Goal:
    text: str
    judge: Callable[[dict], tuple]


@dataclass
class Work:
    name: str
    goals: tuple = ()


def times_as_fast(factor):
    """At least this many times as fast as the fastest peer."""
    def judge(medians):
        fastest = min(time for who, time in medians.items() if who not in (OURS, *LEAST))
        return fastest / medians[OURS] >= factor, f"{fastest / medians[OURS]:.2f}"
    return Goal(f"≥ {factor} times as fast as the fastest peer", judge)


def times_as_long(factor, peer):
    """At most this many times what `peer` takes. Nothing to judge where it was not measured."""
    def judge(medians):
        if peer not in medians:
            return None
        ratio = medians[OURS] / medians[peer]
        return ratio <= factor, f"{ratio:.2f}"
    return Goal(f"≤ {factor:g} times {peer}", judge)


def below_all_but(*others):
    """Below every peer but the named ones."""
    def judge(medians):
        rest = min(value for who, value in medians.items() if who not in (OURS, *others))
        return medians[OURS] < rest, f"{medians[OURS] / rest:.2f}"
    return Goal("below the others", judge)


def at_most(limit, text):
    def judge(medians):
        return medians[OURS] <= limit, f"{medians[OURS] / limit:.2f}"
    return Goal(f"≤ {text}", judge)


def no_growth(percent, small, large):
    """The larger size costs at most this much more than the smaller one."""
    def judge(medians):
        growth = medians[large] / medians[small] - 1
        return growth <= percent / 100, f"{growth * 100:+.0f}%"
    return Goal(f"≤ {percent}% more at {int(large):,}", judge)


PARSE_GOALS = (times_as_fast(3), times_as_long(3, CUTTING))

WORKS = [
    Work("parse from memory, 1"),
    Work("parse from memory, 100"),
    Work("parse from memory, 10000", PARSE_GOALS),
    Work("parse from memory, 100000"),
    Work("parse from a file, 1"),
    Work("parse from a file, 100"),
    Work("parse from a file, 10000", (times_as_fast(3),)),
    Work("parse from a file, 100000"),
    Work("check of a spec file, 100000", (times_as_long(1, "parsing it"),)),
    Work("diff of 5000 reports", (at_most(2, "2 s"),)),
    Work("memory of that diff", (below_all_but(),)),
    Work("growth, an entry of", (no_growth(15, "1000", "1000000"),)),
    Work("memory of an entry", (at_most(600, "600 B"), below_all_but())),
    Work("handshake, both sides", (times_as_fast(1.3),)),
    Work("handshake, agent's side", (times_as_fast(1.3),)),
    Work("handshake, 20 ms away", (times_as_long(1.1, BARE),)),
    Work("sends of a handshake", (at_most(2, "2"),)),
    Work("receives of a handshake", (at_most(3, "3"),)),
    Work("key press and backspace", (no_growth(10, "10", "100000"),)),
    Work("page switch, there and back", (no_growth(10, "10", "100000"),)),
    Work("selection in the tree, far", (no_growth(10, "10", "100000"),)),
    Work("start to painted window, 50", (times_as_long(1.1, PRESCRIBED), below_all_but(BARE, PRESCRIBED))),
    Work("private bytes, idle, 50", (times_as_long(1.15, BARE),)),
    Work("start-up, 10000", (times_as_long(1.15, BARE),)),
    Work("OK, 1000 changed values", (times_as_long(1.15, BARE),)),
    Work("tavrinctl apply, 1000 unchanged", (times_as_long(1.15, BARE),)),
    Work("tavrinctl show, 50", (times_as_long(1.15, "reg query"),)),
    Work("connection test, 100 servers", (times_as_long(1.1, PRESCRIBED),)),
    Work("test of 50 servers 20 ms away", (times_as_long(1.1, PRESCRIBED),)),
    Work("program file", (at_most(350 * 1024, "350 KiB"),)),
]
