#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures a report of 102,400 events: how long the command takes to write the page, with how much
memory, and how large the page is. Ends with 1 beyond the limits.

  report.py COMMAND SOURCE-FOLDER PAGE

The events are those of a file of the example board, repeated in all eight files of sixteen boards with
other times, ids and readings.
"""
import os
import pathlib
import resource
import statistics
import struct
import subprocess
import sys
import tempfile
import time

BOARDS = 16
FILES = 8
SLOT = 138  # bytes; next id, the record from byte 2 on, what extends it
RUNS = 5
SECONDS = 2.0
MEGABYTES = 200
PAGE_BYTES = 12_000_000


def write_root(board, root):
    """Writes a root whose boards have full logs; returns how many events they have."""
    source = (board / "var/tav/fmem/ipmi/sb0_bmc_sel1").read_bytes()
    slots = [source[at : at + SLOT] for at in range(0, len(source), SLOT)]
    rotated = root / "var/tav/fmem/ipmi"
    for folder in (root / "tmp", rotated, root / "etc/default/config"):
        folder.mkdir(parents=True)
    (root / "etc/default/config/sdr.bin").write_bytes(
        (board / "etc/default/config/sdr.bin").read_bytes()
    )
    for number in range(BOARDS):
        event = 0
        for file in reversed(range(FILES)):
            content = bytearray()
            for position, original in enumerate(slots):
                slot = bytearray(original)
                event += 1
                struct.pack_into("<HH", slot, 0, event + 1, event)
                struct.pack_into("<I", slot, 5, 1_794_000_000 + event * 90 + number * 7)
                slot[16] = (position * 7 + file) % 256
                content += slot
            (rotated / f"sb{number}_bmc_sel{file}").write_bytes(content)
        (root / f"tmp/sb{number}_bmc_sel0").write_bytes(content)
    return BOARDS * FILES * len(slots)


def main():
    command, source, page = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder, "root")
        events = write_root(source / "examples/board", root)
        seconds = []
        for _ in range(RUNS):
            begun = time.monotonic()
            arguments = [command, "--boards", str(BOARDS), "report", str(root), "-o", page]
            subprocess.run(arguments, check=True, stdout=subprocess.DEVNULL)
            seconds.append(time.monotonic() - begun)
    megabytes = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1000
    is_within = True
    for name, value, unit, limit in (
        ("events", events, "", None),
        ("written in", statistics.median(seconds), "s", SECONDS),
        ("memory", megabytes, "MB", MEGABYTES),
        ("page", os.path.getsize(page), "bytes", PAGE_BYTES),
    ):
        is_beyond = limit is not None and value > limit
        is_within = is_within and not is_beyond
        text = f"{value:.2f}" if isinstance(value, float) else str(value)
        print(f"{name:36} {text:>9} {unit}{f', beyond {limit}' if is_beyond else ''}".rstrip())
    return 0 if is_within else 1


sys.exit(main())
