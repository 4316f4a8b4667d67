#!/usr/bin/env python3
"""Prints the results of zon_bench as Markdown tables.

    zon_bench --benchmark_repetitions=5 --benchmark_format=json >FILE; table.py FILE
"""
import json
import sys


def read(path):
    """Row name -> {"median": {...}, "cv": {...}}. The part of a name after the size is removed."""
    rows = {}
    with open(path, encoding="utf-8") as file:
        for row in json.load(file)["benchmarks"]:
            name = "/".join(row["run_name"].split("/")[:3])
            if row.get("error_occurred"):
                sys.exit(f"{name}: {row['error_message']}")
            rows.setdefault(name, {})[row.get("aggregate_name", "run")] = row
    return rows


class Results:
    def __init__(self, rows):
        self.rows = rows

    def get(self, name, counter="per_value", what="median"):
        return self.rows.get(name, {}).get(what, {}).get(counter)

    def ns(self, name):
        seconds = self.get(name)
        return None if seconds is None else 1e9 * seconds


def figure(number):
    if number is None:
        return ""
    return f"{number:.2f}" if number < 10 else f"{number:.1f}" if number < 100 else f"{number:.0f}"


def line(*cells):
    print("| " + " | ".join(cells) + " |")


ACTIONS = ["first", "load", "read", "free", "lookup", "find", "write", "rewrite", "build", "tokens", "compare", "numbers", "memory"]
SIZES = ["100KB", "1MB", "10MB", "50MB", "small", "settings", "settings1MB", "settings10MB"]


def place(wanted, among):
    return among.index(wanted) if wanted in among else len(among)


def matrix(results, title, cell, wanted):
    names = [name.split("/") for name in results.rows]
    peers = sorted({peer for _, peer, _ in names}, key=lambda peer: (place(peer, ["zon"] + NAMED), peer))
    actions = sorted(
        {(action, size) for action, _, size in names if wanted(action)},
        key=lambda row: (place(row[0], ACTIONS), place(row[1], SIZES), row[1]),
    )
    shown = {key: [cell(f"{key[0]}/{peer}/{key[1]}") for peer in peers] for key in actions}
    shown = {key: row for key, row in shown.items() if any(cell is not None for cell in row)}
    used = [n for n in range(len(peers)) if any(row[n] is not None for row in shown.values())]
    line(title, *(peers[n] for n in used))
    line("---", *("---:" for _ in used))
    for (action, size), row in shown.items():
        line(f"{action} {size}", *(figure(row[n]) for n in used))
    print()


PLAIN = ["rapidjson"]
WRITERS = ["rapidjson", "rapidjson-pretty", "simdjson", "pugixml"]
NAMED = ["rapidjson", "simdjson", "pugixml", "nlohmann", "jansson", "lua", "libconfig", "toml++", "yaml-cpp"]
# action, size, the libraries to compare with (the fastest counts), the greatest ratio allowed
GOALS = [
    ("load", "1MB", PLAIN, 1.0),
    ("load", "10MB", PLAIN, 1.0),
    ("load", "small", PLAIN, 1.4),
    ("load", "settings", PLAIN, 1.1),
    ("load", "settings1MB", PLAIN, 0.7),
    ("load", "settings10MB", PLAIN, 0.8),
    ("first", "100KB", PLAIN, 1.1),
    ("read", "1MB", PLAIN, 1.1),
    ("read", "10MB", PLAIN, 1.1),
    ("read", "settings", PLAIN, 1.2),
    ("read", "settings1MB", PLAIN, 1.1),
    ("lookup", "1MB", NAMED, 1.0),
    ("find", "settings", ["jansson"], 1.2),
    ("find", "settings1MB", ["jansson"], 1.0),
    ("find", "settings10MB", ["jansson"], 0.8),
    ("write", "1MB", WRITERS, 0.85),
    ("write", "10MB", WRITERS, 0.85),
    ("write", "settings", PLAIN, 0.9),
    ("write", "settings1MB", PLAIN, 0.8),
    ("build", "1MB", ["nlohmann"], 1.0),
]


def verdict(ratio, goal):
    return ["", ""] if goal is None else [figure(goal), "met" if ratio <= goal else "not met"]


def goals(results):
    line("What", "zon, ns", "compared with", "ns", "ratio", "goal", "")
    line("---", "---:", "---", "---:", "---:", "---:", "---")
    for action, size, peers, goal in GOALS:
        own = results.ns(f"{action}/zon/{size}")
        times = {peer: results.ns(f"{action}/{peer}/{size}") for peer in peers}
        times = {peer: time for peer, time in times.items() if time is not None}
        if own is None or not times:
            continue
        best = min(times, key=times.get)
        ratio = own / times[best]
        line(f"{action} {size}", figure(own), best, figure(times[best]), figure(ratio), *verdict(ratio, goal))
    small, large = results.ns("load/zon/1MB"), results.ns("load/zon/50MB")
    if small and large:
        line("load 50MB", figure(large), "itself, 1MB", figure(small), figure(large / small), *verdict(large / small, 1.2))
    print()


def alone(results):
    spread = results.get("load/zon/1MB", what="cv")
    rate = results.get("tokens/zon/10MB", "bytes_per_second")
    for text, value in [
        ("bytes per value, 10 MB, resident after the load", results.get("memory/zon/10MB", "resident_per_value")),
        ("bytes per value, 10 MB, resident at the peak", results.get("memory/zon/10MB", "peak_per_value")),
        ("free alone, 1 MB, ns per value", results.ns("free/zon/1MB")),
        ("free alone, 10 MB, ns per value", results.ns("free/zon/10MB")),
        ("token reader, 10 MB, MB/s", rate and rate / 1e6),
        ("spread of load 1 MB over the repetitions, %", spread and 100 * spread),
    ]:
        print(f"- {text}: {figure(value)}")
    print()


def matrix_cell(results, counter):
    return lambda name: results.get(name, counter)


def growth(results):
    """How much longer a million edits take than half of them, at most."""
    worst = None
    for name in results.rows:
        if not name.startswith("edit/"):
            continue
        for counter in ["insert", "rename", "delete"]:
            whole = results.get(name, counter)
            half = results.get(name.replace("edit/", "edithalf/"), counter)
            if whole and half:
                worst = max(worst or (0, ""), (whole / half, f"{counter}, {name.split('/')[2]}"))
    if worst:
        print(f"- a million edits over half a million, at most: {worst[0]:.2f} ({worst[1]})\n")


def main():
    results = Results(read(sys.argv[1]))
    goals(results)
    alone(results)
    matrix(results, "ns per value", results.ns, lambda action: action not in ("memory", "edit", "edithalf"))
    for counter in ["insert", "rename", "delete"]:
        million = matrix_cell(results, counter)
        matrix(results, f"{counter} a million: seconds", million, lambda action: action == "edit")
    growth(results)
    for counter, title in [("resident_per_value", "bytes per value, resident"), ("peak_per_value", "bytes per value, peak")]:
        matrix(results, title, lambda name: results.get(name, counter), lambda action: action == "memory")


main()
