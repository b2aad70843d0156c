"""Runs the benchmarks, and writes their table and plot. Called by scripts/bench."""

import json
import os
import platform
import re
import statistics
import subprocess
import sys
import time
from datetime import date
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
INSTRUCTIONS = ROOT / "bench" / "instructions.txt"
PAPER = ROOT / "docs" / "performance.md"
PLOT = ROOT / "docs" / "performance.svg"
SIZES = (1000, 8000, 32767)
TOLERANCE = 0.02  # of the instruction counts: other versions of the compiler and of the C library differ by that

# Work, what it is, the library that it is compared with, the goal as a ratio, and what its ratio divides by.
WORKS = (
    ("W1", "check the file", "getline", 0.4),
    ("W2", "build the request and post it", "gSOAP", 0.45),
    ("W3", "answer into records", "rapidxml", 0.6),
    ("W4", "results page", "fprintf", 0.5),
)
IMPORT_GOAL = 2.5

# The editor: work, what it is, and the goal for each of Qt's own ways to do it.
EDITOR_WORKS = (
    ("W5 open", "open the file until it is painted", "string model", 0.5),
    ("W5 open", "the same", "QTableWidget", 0.15),
    ("W5 save", "save it", "string model", 0.2),
)
MEMORY_GOAL = 0.55


def run_program(program, quick):
    repetitions = 5 if quick else 15
    output = subprocess.run(
        [program, f"--benchmark_repetitions={repetitions}", "--benchmark_enable_random_interleaving=true",
         "--benchmark_min_time=0.05", "--benchmark_format=json"],
        check=True, capture_output=True, text=True, env=os.environ | {"QT_QPA_PLATFORM": "offscreen"}).stdout
    return json.loads(output)["benchmarks"]


def run_benchmarks(binaries, quick):
    """The medians of the times, of the processor's times, and of the bytes that an open editor holds."""
    times, user, heap = {}, {}, {}
    for entry in run_program(binaries / "imex_bench", quick) + run_program(binaries / "imex_editor_bench", quick):
        if entry["run_type"] == "iteration":
            if entry.get("error_occurred"):
                raise SystemExit(f"{entry['name']}: {entry['error_message']}")
            work, size = re.fullmatch(r"(.*)/(\d+)/real_time", entry["run_name"]).groups()
            times.setdefault((work, int(size)), []).append(entry["real_time"])
            user.setdefault((work, int(size)), []).append(entry["cpu_time"])
            if "heap" in entry:
                heap.setdefault((work, int(size)), []).append(entry["heap"])
    return tuple({key: statistics.median(values) for key, values in measured.items()}
                 for measured in (times, user, heap))


def time_processes(binaries, folder, quick):
    """The whole program against a client of the same bytes, each started anew; and other tools on the same file."""
    service = subprocess.Popen([binaries / "imex_bench", "--serve", str(SIZES[-1])], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, text=True)
    port, file, request = service.stdout.readline().split()
    address = f"http://127.0.0.1:{port}/"
    commands = {
        "raw": [binaries / "imex_bench", "--raw", port, request],
        "imex, send road": imex(binaries, file, address, "send"),
        "imex, instant road": imex(binaries, file, address, "instant"),
        "mawk": ["mawk", "-F\t", 'NF != 20 || $2 == "" || $3 == "" || $6 == "" || $7 == "" || $8 == "" || '
                 '$11 == "" || $13 == "" { bad++ } END { print bad + 0 }', file],
        "datamash": ["datamash", "check", "20", "fields"],
        "miller": ["mlr", "--itsv", "--implicit-csv-header", "--ojson", "filter", 'is_empty($2) || is_empty($13)', file],
    }
    times = {name: [] for name in commands}
    try:
        for _ in range(3 if quick else 11):
            for name, command in commands.items():  # in turn, so that all see the same machine
                with open(file, "rb") as stream:
                    try:
                        times[name].append(run_tool(command, stream))
                    except FileNotFoundError:
                        pass
    finally:
        service.stdin.close()
        service.wait()
    return {name: statistics.median(values) for name, values in times.items() if values}


def imex(binaries, file, address, road):
    return [binaries / "imex", "import", file, "--type", "CUSTOMER", "--origin", "AGENT", "--road", road, "--app-dir",
            ROOT / "share", "--secured", address, "--user", "Ann Agent", "--user-id", "agent1"]


def run_tool(command, stream):
    begin = time.perf_counter()
    done = subprocess.run(command, stdin=stream, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    milliseconds = (time.perf_counter() - begin) * 1000
    if done.returncode not in (0, 1):  # 1: the prepared answer has failing lines
        raise SystemExit(f"{command[0]}: {done.stderr.decode()}")
    return milliseconds


def verdict(ratio, goal):
    return "met" if ratio <= goal else f"missed by {ratio / goal - 1:.0%}"


def editor_rows(times, user, heap):
    last = SIZES[-1]
    lines = []
    for work, what, peer, goal in EDITOR_WORKS:
        limit, theirs, ours = (times[f"{work}/{name}", last] for name in ("limit", peer, "ours"))
        cpu = user[f"{work}/ours", last] / user[f"{work}/{peer}", last]
        lines.append(f"| W5 {what} | {limit:.1f} ms | {peer} {theirs:.1f} ms | {ours:.1f} ms | {ours / theirs:.2f} | "
                     f"{goal:.2f} | {verdict(ours / theirs, goal)} | {cpu:.2f} |")
    theirs, ours = (heap[f"W5 open/{name}", last] / 2**20 for name in ("string model", "ours"))
    lines.append(f"| W5 memory while it is open | | string model {theirs:.1f} MiB | {ours:.1f} MiB | "
                 f"{ours / theirs:.2f} | {MEMORY_GOAL:.2f} | {verdict(ours / theirs, MEMORY_GOAL)} | |")
    return lines


def table(times, user, heap, processes):
    last = SIZES[-1]
    lines = ["| work | limit | peer | ours | ratio | goal | | ratio of user time |",
             "| --- | ---: | ---: | ---: | ---: | ---: | --- | ---: |"]
    for work, what, peer, goal in WORKS:
        limit, theirs, ours = (times[f"{work}/{name}", last] for name in ("limit", peer, "ours"))
        cpu = user[f"{work}/ours", last] / user[f"{work}/{peer}", last]
        ratio = ours / theirs
        lines.append(f"| {work} {what} | {limit:.1f} ms | {peer} {theirs:.1f} ms | {ours:.1f} ms | {ratio:.2f} | "
                     f"{goal:.2f} | {verdict(ratio, goal)} | {cpu:.2f} |")
    lines += editor_rows(times, user, heap)
    limit = times["import/limit", last]
    for road in ("send road", "instant road"):
        ours = times[f"import/{road}", last]
        lines.append(f"| import in a program that runs, {road} | {limit:.1f} ms | raw {limit:.1f} ms | {ours:.1f} ms | "
                     f"{ours / limit:.2f} | {IMPORT_GOAL:.2f} | {verdict(ours / limit, IMPORT_GOAL)} | |")
    for road in ("send road", "instant road"):
        raw, ours = processes["raw"], processes[f"imex, {road}"]
        lines.append(f"| `imex import` from its start, {road} | {raw:.1f} ms | raw client {raw:.1f} ms | {ours:.1f} ms | "
                     f"{ours / raw:.2f} | {IMPORT_GOAL:.2f} | {verdict(ours / raw, IMPORT_GOAL)} | |")
    lines += ["", "Beside them, in milliseconds: " + ", ".join(
        [f"W2 on the send road {times['W2/ours, send road', last]:.1f}", f"W3 pugixml {times['W3/pugixml', last]:.1f}"] +
        [f"W1 {name} as a process {processes[name]:.0f}" for name in ("mawk", "datamash", "miller")
         if name in processes]) + "."]
    return "\n".join(lines)


def growth(times):
    lines = ["| work | " + " | ".join(f"{size:,} lines" for size in SIZES) + " | per line, last to first |",
             "| --- |" + " ---: |" * (len(SIZES) + 1)]
    for name in ("W1/ours", "W2/ours", "W3/ours", "W4/ours", "W5 open/ours", "W5 save/ours",
                 "import/send road", "import/instant road"):
        own = [times[name, size] for size in SIZES]
        per_line = (own[-1] / SIZES[-1]) / (own[0] / SIZES[0])
        lines.append(f"| {name} | " + " | ".join(f"{value:.2f} ms" for value in own) + f" | {per_line:.2f} |")
    return "\n".join(lines)


def plot(times):
    """Time against the number of lines, both from 0, so that a cost in proportion is a straight line."""
    names = ("W1/ours", "W2/ours", "W3/ours", "W4/ours", "import/instant road")
    colours = ("#1b6ca8", "#c8553d", "#588157", "#7d4e9f", "#444444")
    width, height, left, bottom = 640, 400, 60, 350
    greatest = max(times[name, size] for name in names for size in SIZES) * 1.05
    x = lambda size: left + (width - left - 150) * size / SIZES[-1]
    y = lambda value: bottom - (bottom - 20) * value / greatest
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" font-family="sans-serif" '
             'font-size="12">', f'<rect width="{width}" height="{height}" fill="white"/>',
             f'<path d="M{left} 20V{bottom}H{x(SIZES[-1]):.0f}" fill="none" stroke="black"/>']
    for size in SIZES:
        parts.append(f'<text x="{x(size):.0f}" y="{bottom + 18}" text-anchor="middle">{size:,}</text>')
    for step in range(5):
        value = greatest * step / 4
        parts.append(f'<text x="{left - 6}" y="{y(value) + 4:.0f}" text-anchor="end">{value:.1f}</text>')
    parts.append(f'<text x="{left}" y="14">milliseconds</text>')
    parts.append(f'<text x="{x(SIZES[-1]) / 2 + 30:.0f}" y="{bottom + 38}" text-anchor="middle">lines</text>')
    for name, colour in zip(names, colours):
        points = " ".join(f"{x(size):.1f},{y(times[name, size]):.1f}" for size in SIZES)
        parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>')
        parts.append(f'<text x="{x(SIZES[-1]) + 6:.0f}" y="{y(times[name, SIZES[-1]]) + 4:.1f}" fill="{colour}">'
                     f"{name}</text>")
    return "\n".join(parts + ["</svg>", ""])


def machine():
    model = re.search(r"model name\s*: (.*)", Path("/proc/cpuinfo").read_text())
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True).stdout.splitlines()[0]
    load = os.getloadavg()[0]
    return (f"{model.group(1) if model else platform.machine()}, {os.cpu_count()} processors, Linux "
            f"{platform.release().split('-')[0]}, {compiler}; {date.today()}, load {load:.1f}")


def write_paper(text, part="measured"):
    paper = PAPER.read_text()
    begin, end = f"<!-- {part}: begin -->\n", f"<!-- {part}: end -->"
    head, rest = paper.split(begin)
    PAPER.write_text(head + begin + text + rest[rest.index(end):])


def measure(binaries, folder, quick):
    times, user, heap = run_benchmarks(binaries, quick)
    processes = time_processes(binaries, folder, quick)
    text = f"Measured on {machine()}.\n\n{table(times, user, heap, processes)}\n\n{growth(times)}\n"
    print(text)
    if not quick:
        write_paper(text)
        PLOT.write_text(plot(times))


def serve_load(binaries, store, services, agents, files, lines):
    output = subprocess.run([binaries / "service_load", store, str(services), str(agents), str(files), str(lines)],
                            check=True, capture_output=True, text=True).stdout
    return {name: float(value) for name, value in re.findall(r"(files/s|p50|p95|max) ([\d.]+)", output)}


def measure_service(binaries, quick):
    """Files in a second and the time of one, for several agents at once, each run with a store of its own."""
    files, repetitions = (160, 1) if quick else (640, 3)
    lines = ["| store | services | agents | files/s | file, median | 95 of 100 files within | longest |",
             "| --- | ---: | ---: | ---: | ---: | ---: | ---: |"]
    for store, name, services in (("sqlite", "SQLite", 1), ("postgresql", "PostgreSQL", 2)):
        for agents in (1, 8, 64):
            runs = [serve_load(binaries, store, services, agents, files, 100) for _ in range(repetitions)]
            run = sorted(runs, key=lambda each: each["files/s"])[len(runs) // 2]
            lines.append(f"| {name} | {services} | {agents} | {run['files/s']:.0f} | {run['p50']:.1f} ms | "
                         f"{run['p95']:.1f} ms | {run['max']:.1f} ms |")
    largest = [f"{name} {serve_load(binaries, store, 1, 1, 3, SIZES[-1])['p50'] / 1000:.2f} s"
               for store, name in (("sqlite", "SQLite"), ("postgresql", "PostgreSQL"))]
    text = (f"Measured on {machine()}: {files} files of 100 lines each, of the run with the median number of files a "
            f"second among {repetitions}.\n\n" + "\n".join(lines) +
            f"\n\nOne file of {SIZES[-1]:,} lines: {', '.join(largest)} (median of 3).\n")
    print(text)
    if not quick:
        write_paper(text, "service")


def count(program, work, folder):
    done = subprocess.run(
        ["valgrind", "--tool=callgrind", "--collect-atstart=no", f"--callgrind-out-file={folder}/callgrind.{work}",
         program, "--once", work], capture_output=True, text=True, check=True)
    return int(re.search(r"Collected : (\d+)", done.stderr).group(1))


def count_instructions(binaries, folder, approve):
    counts = {work: count(binaries / "imex_bench", work, folder) for work, *_ in WORKS}
    if approve:
        lines = [f"{work} {number}" for work, number in counts.items()]
        INSTRUCTIONS.write_text("# Instructions of each piece of work for 1,000 lines, as scripts/bench counts them.\n" +
                                "\n".join(lines) + "\n")
        print(INSTRUCTIONS.read_text(), end="")
        return 0
    known = dict(line.split() for line in INSTRUCTIONS.read_text().splitlines() if not line.startswith("#"))
    status = 0
    for work, number in counts.items():
        change = number / int(known[work]) - 1
        is_worse = change > TOLERANCE
        status |= is_worse
        print(f"{work} {number:>12,} {change:+.2%}" + (" more than is allowed" if is_worse else ""))
    return status


def main():
    binaries, folder, *options = sys.argv[1:]
    if unknown := set(options) - {"--quick", "--instructions", "--approve", "--service"}:
        raise SystemExit(f"unknown option {unknown.pop()}")
    if "--instructions" in options:
        raise SystemExit(count_instructions(Path(binaries).absolute(), folder, "--approve" in options))
    if "--service" in options:
        measure_service(Path(binaries).absolute(), "--quick" in options)
    else:
        measure(Path(binaries).absolute(), folder, "--quick" in options)


main()
