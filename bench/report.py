#!/usr/bin/env python3
"""Runs each operation beside its references and writes the table and the plots.

Every figure is CPU time. Each operation runs in a process of its own, ours and its references in turn; the first round
of a process is "first", the median of its later rounds "warm", and what is shown is the median over the processes.
"""
import argparse
import json
import math
import os
import pathlib
import platform
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BENCH = ROOT / "build/bench"
DOCUMENTS = BENCH / "documents"
PROCESSES = 9
ROUNDS = 4
TINY_CALLS = 100  # of a round
MEMBERS = (1000, 10000, 30000)
TREE = "libxml2 tree"

# (what is shown, our operation, document or folder that it is measured by, sizes, targets first / warm at the size)
ROWS = (
    ("parse a question pool into our tree", "parse questionpool", "questionpool", MEMBERS, (0.7, 0.65)),
    ("question pool load", "pool load", "questionpool", MEMBERS, (1.1, 0.85)),
    ("question pool save", "pool save", "questionpool", MEMBERS, (0.33, 0.3)),
    ("task pool load", "task pool load", "taskpool", MEMBERS, None),
    ("task pool save", "task pool save", "taskpool", MEMBERS, None),
    ("task pool load over HTTP", "http load", "taskpool", MEMBERS, None),
    ("parse a roster into our tree", "parse students", "students", MEMBERS, (0.7, 0.65)),
    ("roster load", "roster load", "students", MEMBERS, (0.9, 0.85)),
    ("roster save", "roster save", "students", MEMBERS, (0.33, 0.3)),
    ("roster sort by three keys", "roster sort", "students", MEMBERS, (0.16, 0.16)),
    ("roster filter", "roster filter", "students", MEMBERS, (0.01, 0.01)),
    ("roster insertion, file to file", "roster add", "students", MEMBERS, None),
    ("exam load, its pool at hand", "exam load", "exam", (50, 200, 800), None),
    ("class summary", "class summary", "class", (30, 100, 300), None),
    ("listing of attempts", "listing", "attempts", (200, 1000, 2000), None),
)
TARGET_SIZE = {"questionpool": 10000, "students": 30000}
OTHERS = ("libxml2 events", "expat events", "pugixml tree")
READING = ("files read", "files read, expat events")  # of a folder, as a listing has to
# (what is shown, document, the most that is held and that the process grows by, in sizes of the document)
MEMORY = (("question pool load", "questionpool", (2.4, 3.5)), ("roster load", "students", (3, 4)))


class Figures:
    """One operation at one size: milliseconds, and memory in bytes."""

    def __init__(self):
        self.first, self.warm, self.held, self.growth, self.bytes = [], [], 0, 0, 0

    def add(self, times, counters=None):
        self.first.append(times[0])
        self.warm.append(statistics.median(times[1:] or times))
        if counters:
            self.held = counters.get("held", 0)
            self.growth = max(self.growth, counters.get("growth", 0))
            self.bytes = counters.get("bytes", 0)

    def median(self):
        return statistics.median(self.first), statistics.median(self.warm)


def measure(operation, size, figures, rounds, server=""):
    command = [BENCH / "bench/kavlor_bench", DOCUMENTS, operation, str(size), f"--benchmark_repetitions={rounds}",
               "--benchmark_format=json"]
    result = subprocess.run(command, check=True, capture_output=True, text=True,
                            env={**os.environ, "KAVLOR_SERVER": server})
    runs = [run for run in json.loads(result.stdout)["benchmarks"] if run["run_type"] == "iteration"]
    figures.add([run["cpu_time"] for run in runs], runs[0])


def tiny(operation):
    """Nanoseconds of one call."""
    figures = Figures()
    measure(operation, 1, figures, 9)
    return statistics.median(figures.first + figures.warm) / TINY_CALLS


def serve():
    server = subprocess.Popen([BENCH / "kavlor-server", DOCUMENTS], stdout=subprocess.PIPE, text=True)
    return server, server.stdout.readline().split()[-1]


def lxml(size, figures, rounds):
    output = subprocess.run(["/usr/bin/python3", ROOT / "bench/lxml_reference.py",
                             DOCUMENTS / f"questionpool_{size}.xml", str(rounds)],
                            check=True, capture_output=True, text=True).stdout
    figures.add([float(line) for line in output.split()])


def milliseconds(value):
    return f"{value:.2f}" if value < 10 else f"{value:.0f}"


def row_table(results):
    lines = ["| operation | size | ours: first / warm, ms | libxml2's tree: first / warm, ms | ratio: first / warm | "
             "held | growth |", "|---|---:|---:|---:|---:|---:|---:|"]
    for (label, size, document), (own, reference) in results.items():
        (first, warm), (tree_first, tree_warm) = own.median(), reference.median()
        memory = ("", "") if not own.held or "load" not in label and "parse" not in label else (
            f"{own.held / own.bytes:.1f}", f"{own.growth / own.bytes:.1f}")
        lines.append(f"| {label} | {size:,} | {milliseconds(first)} / {milliseconds(warm)} | "
                     f"{milliseconds(tree_first)} / {milliseconds(tree_warm)} | "
                     f"{first / tree_first:.3g} / {warm / tree_warm:.3g} | {memory[0]} | {memory[1]} |")
    return "\n".join(lines)


def target_table(results):
    lines = ["| operation | size | target: first / warm | measured | held |", "|---|---:|---:|---:|---|"]
    for label, _, document, _, target in ROWS:
        if not target:
            continue
        size = TARGET_SIZE[document]
        own, reference = results[(label, size, document)]
        ratios = [mine / theirs for mine, theirs in zip(own.median(), reference.median())]
        held = "yes" if all(ratio <= bound for ratio, bound in zip(ratios, target)) else "no"
        lines.append(f"| {label} | {size:,} | {target[0]} / {target[1]} | {ratios[0]:.3g} / {ratios[1]:.3g} | {held} |")
    lines += ["", "| memory, in sizes of the document | size | target: held / growth | measured | held |",
              "|---|---:|---:|---:|---|"]
    for label, document, target in MEMORY:
        size = TARGET_SIZE[document]
        own, _ = results[(label, size, document)]
        memory = own.held / own.bytes, own.growth / own.bytes
        held = "yes" if all(have <= bound for have, bound in zip(memory, target)) else "no"
        lines.append(f"| {label} | {size:,} | {target[0]} / {target[1]} | {memory[0]:.2f} / {memory[1]:.2f} | {held} |")
    return "\n".join(lines)


def plot(label, points, path):
    """Cost over size, both axes logarithmic, ours and the reference tree."""
    width, height, margin = 460, 260, 50
    sizes = [size for size, _, _ in points]
    costs = [cost for point in points for cost in point[1:]]
    low_x, high_x = math.log10(min(sizes)), math.log10(max(sizes))
    low_y, high_y = math.floor(math.log10(min(costs))), math.ceil(math.log10(max(costs)))

    def place(size, cost):
        x = margin + (math.log10(size) - low_x) / (high_x - low_x) * (width - margin - 90)
        y = height - 40 - (math.log10(cost) - low_y) / max(high_y - low_y, 1) * (height - 80)
        return x, y

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif" '
             f'font-size="12" role="img" aria-label="{label}: CPU time over size"><rect width="100%" height="100%" '
             f'fill="#fff"/><text x="{margin}" y="20" font-weight="bold">{label}: CPU ms, warm</text>']
    for power in range(low_y, high_y + 1):
        _, y = place(sizes[0], 10 ** power)
        parts.append(f'<path d="M{margin} {y:.1f}H{width - 90}" stroke="#ddd"/>'
                     f'<text x="{margin - 6}" y="{y + 4:.1f}" text-anchor="end">{10 ** power:g}</text>')
    for size in sizes:
        x, _ = place(size, 10 ** low_y)
        parts.append(f'<text x="{x:.1f}" y="{height - 20}" text-anchor="middle">{size:,}</text>')
    ends = [place(points[-1][0], points[-1][column])[1] for column in (1, 2)]
    apart = max(0, 14 - abs(ends[0] - ends[1])) / 2  # so that the two names stay legible
    names = [end + (apart if end > other else -apart) for end, other in (ends, ends[::-1])]
    for column, colour, name in ((1, "#0b5cad", "ours"), (2, "#8a8a8a", "libxml2")):
        line = " ".join("{:.1f},{:.1f}".format(*place(point[0], point[column])) for point in points)
        x, y = place(points[-1][0], 1)[0], names[column - 1]
        parts.append(f'<polyline points="{line}" fill="none" stroke="{colour}" stroke-width="2"/>'
                     f'<text x="{x + 6:.1f}" y="{y + 4:.1f}" fill="{colour}">{name}</text>')
    path.write_text("".join(parts) + "</svg>\n", encoding="utf-8")


def machine():
    model = next((line.split(":", 1)[1].strip() for line in open("/proc/cpuinfo", encoding="utf-8")
                  if line.startswith("model name")), platform.machine())
    memory = int(open("/proc/meminfo", encoding="utf-8").readline().split()[1]) // 1024 // 1024
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True).stdout.strip()
    return f"{os.cpu_count()} x {model}, {memory} GiB; g++ {compiler}"


def creation():
    program = ROOT / "build/windows/kavlor_bench_creation.exe"
    if not program.exists():
        return None
    runs = [subprocess.run([ROOT / "tests/support/wine.sh", program, ROOT / "build/windows/NorvaKavlor.dll"],
                           capture_output=True, text=True).stdout.split() for _ in range(9)]
    return [statistics.median(float(run[column]) for run in runs) for column in (0, 1)]


def school(processes):
    """kavlor's report of a whole school beside reading its attempts and running expat over them: (seconds, seconds)."""
    folder = DOCUMENTS / "school"
    if not folder.exists():
        subprocess.run([sys.executable, ROOT / "bench/generate_school.py", folder], check=True)
        # The reference reads the attempts alone, nearly all of the school's files.
        (DOCUMENTS / "attempts_20000").symlink_to(folder / "exams")
    own, reference = [], Figures()
    for _ in range(processes):
        report = subprocess.Popen([BENCH / "kavlor", "report", folder, "-o", BENCH / "report.html"],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        used = os.wait4(report.pid, 0)[2]
        own.append(used.ru_utime + used.ru_stime)
        measure("files read, expat events attempts", 20000, reference, 1)
    return statistics.median(own), reference.median()[0] / 1000


def progress(text):
    if sys.stderr.isatty():
        print(f"\r\x1b[K{text}", end="", file=sys.stderr, flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--processes", type=int, default=PROCESSES)
    parser.add_argument("--into", type=pathlib.Path, default=ROOT / "docs")
    options = parser.parse_args()
    quick = options.quick
    processes, rounds = (1, 2) if quick else (options.processes, ROUNDS)
    server, address = serve()
    results, others = {}, {}
    try:
        for label, operation, document, sizes, _ in ROWS:
            for size in sizes[:1] if quick else sizes:
                progress(f"{label}, {size}")
                own, reference = results.setdefault((label, size, document), (Figures(), Figures()))
                for _ in range(processes):
                    measure(operation, size, own, rounds, address)
                    measure(f"{TREE} {document}", size, reference, rounds)
        for document, size in (("questionpool", 10000), ("students", 30000), ("attempts", 2000)):
            if quick:
                break
            for tool in OTHERS + (READING if document == "attempts" else ()):
                progress(f"{tool}, {document}")
                for _ in range(processes):
                    measure(f"{tool} {document}", size, others.setdefault((tool, document), Figures()), rounds)
        for _ in range(processes):
            progress("bindings")
            size = MEMBERS[0 if quick else 1]
            measure("xsd binding questionpool", size, others.setdefault(("CodeSynthesis XSD", "questionpool"), Figures()), 2)
            lxml(size, others.setdefault(("lxml into classes", "questionpool"), Figures()), 2)
    finally:
        server.terminate()
        server.wait()
    progress("")
    whole_school = None if quick else school(processes)
    tiny_figures = [tiny(name) for name in ("late-bound read", "virtual call", "create and release")]
    table = row_table(results)
    print(table)
    if quick:
        return
    write(options, results, others, table, tiny_figures, whole_school)


def write(options, results, others, table, tiny_figures, whole_school):
    call, direct, create = tiny_figures
    pool = results[("question pool load", 10000, "questionpool")][0].median()
    listing = results[("listing of attempts", 2000, "attempts")][0].median()
    lines = ["| tool | documents | first / warm, ms |", "|---|---|---:|"]
    names = {"questionpool": "question pool, 10,000", "students": "roster, 30,000", "attempts": "2,000 attempt files"}
    for (tool, document), figures in others.items():
        first, warm = figures.median()
        lines.append(f"| {tool} | {names[document]} | {milliseconds(first)} / {milliseconds(warm)} |")
    events = others[("files read, expat events", "attempts")].median()
    binding, lxml_figures = (others[(tool, "questionpool")].median() for tool in ("CodeSynthesis XSD", "lxml into classes"))
    plots = options.into / "performance"
    plots.mkdir(parents=True, exist_ok=True)
    pictures = []
    for label, _, document, sizes, _ in ROWS:
        name = label.replace(",", "").replace(" ", "-")
        plot(label, [(size, *(figures.median()[1] for figures in results[(label, size, document)])) for size in sizes],
             plots / f"{name}.svg")
        pictures.append(f"![{label}](performance/{name}.svg)")
    dll = creation()
    dll_text = ("not measured: the Windows product was not built" if not dll else
                f"first object {dll[0] / 1e6:.1f} ms after the DLL's loading began, later ones {dll[1]:.0f} ns each (Wine)")
    text = f"""# Performance

Written by `./bench/run` on {time.strftime("%-d %B %Y")}. Machine: {machine()}.

Times are CPU time, system calls included. Each operation runs in a process of its own, in turn with its reference, in
{options.processes} {"process" if options.processes == 1 else "processes"} of {ROUNDS} rounds: "first" is the first round of a process, "warm" the median of the later ones,
and the table shows the median over the processes. Freed memory goes back to the system between two rounds, so every
round pays for its own. The reference is libxml2's plain tree of the same bytes, made and freed; its ratio is 1.
"Held" and "growth" are the memory that the result holds and that the process grew by, in sizes of the document.
Machines drift, so compare ratios of one run and not times of two.

## Targets

{target_table(results)}

## Every operation

{table}

## Others on the same bytes

{chr(10).join(lines)}

Finished questions take CodeSynthesis XSD's generated binding {binding[0] / pool[0]:.1f} times and lxml into plain Python
classes {lxml_figures[0] / pool[0]:.1f} times as long as our pool takes (first rounds). The listing of 2,000 attempts
takes {listing[0] / events[0]:.2f} (first) and {listing[1] / events[1]:.2f} (warm) times as long as
reading the same files and running expat over them.

`kavlor report` on a school of 40 classes, 1,200 students, 30 exams and 20,000 attempts takes {whole_school[0]:.2f} s, which is
{whole_school[0] / whole_school[1]:.1f} times as long as reading the exams' folder and running expat over its files
({whole_school[1]:.2f} s).

## Calls

- Late-bound read of a 16-bit property whose name was looked up: {call:.1f} ns, {call / direct:.1f} times a direct virtual
  call of {direct:.1f} ns (target: at most 10 times).
- Creating and releasing a TextBook by ProgID: {create:.0f} ns (target: at most 200).
- Through the DLL: {dll_text}; target: at most 5 ms for the first.

## Cost over size

{chr(10).join(pictures)}
"""
    (options.into / "performance.md").write_text(text, encoding="utf-8")


main()
