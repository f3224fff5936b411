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


def row(*cells):
    print(f"| {' | '.join(cells)} |")


def header(*titles):
    row(*titles)
    print("|" + "---|" * len(titles))


def size(width):
    return f"{width} x {width * 9 // 16}"


def frames(folder):
    runs = medians(folder, "bench_canvas")
    if not runs:
        return
    header("Picture", "Tools in view", "Frame (ms)", "Bare widget (ms)", "Ratio")
    for width in (1920, 3840):
        bare = runs[f"bareWidget/width:{width}"]["us"]
        for tools in (0, 10, 100, 1000):
            shown = runs[f"canvas/width:{width}/tools:{tools}"]["us"]
            row(size(width), str(tools), f"{shown / 1e3:.2f}", f"{bare / 1e3:.2f}",
                f"{shown / bare:.2f}")
    print()


def growth(folder):
    runs = medians(folder, "bench_tools")
    if not runs:
        return
    header("Operation", "n = 10 (µs a tool)", "n = 100", "n = 1000", "1000 to 100")
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
        row(title, *(f"{cost[tools]:.0f}" for tools in cost), f"{cost[1000] / cost[100]:.2f}")
    print()


def camera(folder):
    runs = {
        name.split("/iterations")[0]: run for name, run in medians(folder, "bench_camera").items()
    }
    if not runs:
        return
    header("Source", "Frames a second", "Baseline", "Ratio", "First frame (ms)",
           "Handed out to painted (ms)", "Made to painted (ms)")
    titles = {
        "simulated/width:1920/painted:1": f"simulated, {size(1920)}",
        "simulated/width:3840/painted:1": f"simulated, {size(3840)}",
        "rtsp/h264": "RTSP, H.264, 640 x 480",
        "rtsp/mjpeg": "RTSP, MJPEG, 640 x 480",
        "rtsp/hd": f"RTSP, H.264, {size(1920)}",
        "rtsp/hd-mjpeg": f"RTSP, MJPEG, {size(1920)}",
    }
    for name, title in titles.items():
        run = runs[name]
        unseen = runs.get(name.replace("/painted:1", "/painted:0"), run)
        baseline = run.get("server_fps", unseen["fps"])
        times = [
            f"{run[key]:.1f}" if key in run else "" for key in ("first_ms", "paint_ms", "made_ms")
        ]
        row(title, f"{run['fps']:.1f}", f"{baseline:.1f}", f"{run['fps'] / baseline:.2f}", *times)
    print()


def sized(folder, name):
    """Runs by title and width."""
    runs = {}
    for key, run in medians(folder, name).items():
        title, *arguments = key.split("/")
        width = next((int(it[6:]) for it in arguments if it.startswith("width:")), 0)
        runs[title, width] = run
    return runs


def ratio(run, key):
    return f"{run[key] / run['base_' + key]:.2f}"


def pair(run, key):
    return f"{run[key]:.2f}", f"{run['base_' + key]:.2f}", ratio(run, key)


def capture(folder):
    runs = sized(folder, "bench_capture")
    shown = [it for it in runs.items() if it[0][0].startswith("MJPEG")]
    if shown:
        header("Frames", "Driver to paint (ms)", "Baseline", "Ratio", "Processor (ms)", "Baseline",
               "Ratio")
        for (title, width), run in shown:
            row(f"{title}, {size(width)}", *pair(run, "time"), *pair(run, "cpu"))
        print()
    full = [it for it in runs.items() if it[0][0].startswith("full rate")]
    if full:
        header("Frames at 30 a second", "Painted a second", "Lost", "In order", "Processor (ms)")
        for (title, width), run in full:
            order = "yes" if run["ordered"] == 1 else "no"
            row(f"MJPEG {title[11:]}, {size(width)}", f"{run['fps']:.1f}", f"{run['lost']:.0f}", order, f"{run['cpu']:.1f}")
        print()
    converted = [it for it in runs.items() if it not in shown and it not in full]
    if converted:
        header("Pixels", "Conversion (ms)", "Baseline", "Ratio")
        for (title, width), run in converted:
            row(f"{title}, {size(width)}", *pair(run, "time"))
        print()


def recording(folder):
    runs = sized(folder, "bench_recording")
    live = runs.get(("besideTheLiveView", 0))
    if live:
        header("Recording", "Painted a second", "Not seen", "Not in the file",
               "Longest in the file (ms)")
        row(f"{size(1920)}, 30 a second", f"{live['fps']:.1f}", f"{live['shown_lost']:.0f}",
            f"{live['file_lost']:.0f}", f"{live['longest']:.0f}")
        print()
    alone = {"fromRgb": "RGB", "fromPlanes": "planes of 4:2:0"}
    if any((name, 0) in runs for name in alone):
        header(f"Encoding alone, {size(1920)}, from", "Frames a second", "ffmpeg", "Ratio")
        for name, title in alone.items():
            if (name, 0) in runs:
                run = runs[name, 0]
                row(title, f"{run['file_fps']:.0f}", f"{run['base_file_fps']:.0f}",
                    ratio(run, "file_fps"))
        print()


if __name__ == "__main__":
    for table in (frames, growth, camera, capture, recording):
        table(sys.argv[1])
