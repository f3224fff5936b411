#!/usr/bin/env python3
"""Turns the results of one run of the benchmarks into Markdown tables of ratios."""

import json
import pathlib
import sys


def medians(folder, name):
    """Time in microseconds and counters of each benchmark, by its name without the aggregate."""
    path = pathlib.Path(folder, name + ".json")
    if not path.exists() or path.stat().st_size == 0:  # Empty when a filter left nothing.
        return {}
    unit = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    return {
        run["run_name"]: dict(run, us=run["real_time"] * unit[run["time_unit"]])
        for run in json.loads(path.read_text())["benchmarks"]
        if run.get("aggregate_name") == "median"
    }


def frames(folder):
    runs = medians(folder, "bench_canvas")
    if not runs:
        return
    print("| Picture | Tools in view | Frame (ms) | Bare widget (ms) | Ratio |")
    print("|---|---|---|---|---|")
    for width in (1920, 3840):
        bare = runs[f"bareWidget/width:{width}"]["us"]
        for tools in (0, 10, 100, 1000):
            shown = runs[f"canvas/width:{width}/tools:{tools}"]["us"]
            print(
                f"| {width} x {width * 9 // 16} | {tools} | {shown / 1e3:.2f} "
                f"| {bare / 1e3:.2f} | {shown / bare:.2f} |"
            )
    print()


def growth(folder):
    runs = medians(folder, "bench_tools")
    if not runs:
        return
    print("| Operation | n = 10 (µs a tool) | n = 100 | n = 1000 | 1000 to 100 |")
    print("|---|---|---|---|---|")
    titles = {
        "moveOne": "Move one among n",
        "add": "Add n",
        "deleteAll": "Delete all n",
        "recalibrate": "Change the calibration with n",
    }
    for name, title in titles.items():
        cost = {}
        for tools in (10, 100, 1000):
            run = runs[f"{name}/tools:{tools}"]
            cost[tools] = run["us"] if name == "moveOne" else run["us"] / tools
        print(
            f"| {title} | {cost[10]:.0f} | {cost[100]:.0f} | {cost[1000]:.0f} "
            f"| {cost[1000] / cost[100]:.2f} |"
        )
    print()


def camera(folder):
    runs = {
        name.split("/iterations")[0]: run for name, run in medians(folder, "bench_camera").items()
    }
    if not runs:
        return
    print(
        "| Source | Frames a second | Baseline | Ratio | First frame (ms) "
        "| Arrival to paint (ms) | Made to paint (ms) |"
    )
    print("|---|---|---|---|---|---|---|")
    for name, run in runs.items():
        if name.endswith("/painted:0"):
            continue
        unseen = runs.get(name.replace("/painted:1", "/painted:0"), run)
        baseline = run.get("server_fps", unseen["fps"])
        times = [
            f"{run[key]:.1f}" if key in run else "" for key in ("first_ms", "paint_ms", "made_ms")
        ]
        title = name.replace("/painted:1", "")
        row = [f"{run['fps']:.1f}", f"{baseline:.1f}", f"{run['fps'] / baseline:.2f}", *times]
        print(f"| {title} | {' | '.join(row)} |")
    print()


if __name__ == "__main__":
    for table in (frames, growth, camera):
        table(sys.argv[1])
