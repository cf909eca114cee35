#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Compares the ratios that docs/performance.md promises with what the benchmarks measure.

  check.py BENCHMARKS TABLE

BENCHMARKS is the program, TABLE the page. Exit status 1 where a ratio is exceeded by a quarter, and
where a benchmark of the table does not exist.
"""
import json
import re
import subprocess
import sys

REPETITIONS = 11
TOLERANCE = 1.25


def promises(page):
    """The rows of the table: what, benchmark, floor, the most that their ratio may be."""
    with open(page, encoding="utf-8") as file:
        for line in file:
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if len(cells) == 4 and cells[1].startswith("`"):
                yield cells[0], cells[1].strip("`"), cells[2].strip("`"), float(cells[3])


def medians(program, names):
    """The median processor time of each benchmark, the repetitions of all interleaved."""
    wanted = "|".join(sorted(re.escape(name) for name in names))
    answer = subprocess.run(
        [program, f"--benchmark_filter=^({wanted})$", "--benchmark_format=json",
         f"--benchmark_repetitions={REPETITIONS}", "--benchmark_enable_random_interleaving=true",
         "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.05"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    units = {"ns": 1, "us": 1e3, "ms": 1e6}
    return {row["run_name"]: row["cpu_time"] * units[row["time_unit"]]
            for row in json.loads(answer.stdout)["benchmarks"]
            if row.get("aggregate_name") == "median"}


def main():
    program, page = sys.argv[1:]
    rows = list(promises(page))
    measured = medians(program, {name for row in rows for name in row[1:3]})
    failures = 0
    for what, benchmark, floor, most in rows:
        if benchmark not in measured or floor not in measured:
            print(f"not measured: {benchmark} or {floor}")
            failures += 1
            continue
        ratio = measured[benchmark] / measured[floor]
        verdict = "ok" if ratio <= most else "above" if ratio <= most * TOLERANCE else "FAILED"
        failures += verdict == "FAILED"
        print(f"{verdict:6} {ratio:8.3f} of {most:<5g} {what}")
    if not rows or failures:
        print(f"bench: {failures} of {len(rows)} ratios are exceeded by a quarter or not measured")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
