# SPDX-License-Identifier: Apache-2.0
"""Changes the library in one place at a time and lists the changes that no test notices.

    mutate.py [--count N] [--seed S] [--list] [FILE...]

Run by ./dev mutate, which says what the options do.
"""
import argparse
import fcntl
import json
import random
import shlex
import signal
import sys
import tempfile
import threading
from pathlib import Path

from positions import mutants_of
from trees import (DoesNotBuild, Interrupted, PLAIN, Processes, SANITIZED, Step, TestsFail, Tree)

SOURCE = Path(__file__).resolve().parents[2]
WORK = SOURCE / "build" / "mutate"
EQUIVALENT = Path(__file__).resolve().with_name("equivalent.txt")
MEMORY = Path("/dev/shm")
WORKERS = 2

# The programs of tests/CMakeLists.txt that see a folder's mutants, the quickest and nearest first.
# A new program is added here and nowhere else.
PROGRAMS = {
    "serial": ["serial_tests", "hardware_tests", "sel_tests", "sensor_tests", "fru_tests",
               "eeprom_tests", "field_tests", "selfile_tests", "sibling_tests", "fault_tests"],
    "posix": ["host_tests", "platform_tests", "selfile_tests", "sensor_tests", "fault_tests"],
    "hardware": ["hardware_tests", "field_tests", "allocation_tests"],
    "version": ["hardware_tests", "field_tests", "allocation_tests"],
    "sel": ["sel_tests", "field_tests", "selfile_tests"],
    "selfile": ["selfile_tests", "sibling_tests", "fault_tests", "model_tests"],
    "fru": ["fru_tests", "allocation_tests", "sibling_tests", "fault_tests", "model_tests"],
    "util": ["fru_tests", "sibling_tests", "fault_tests", "model_tests"],
    "sensor": ["sensor_tests", "field_tests", "sibling_tests", "allocation_tests", "model_tests"],
    "eeprom": ["eeprom_tests", "field_tests", "sibling_tests", "fault_tests", "model_tests"],
}
# Tests of those programs that run after all others have passed.
SLOW = {
    "selfile_tests": "*Concurrency*:*Kill*",
    "fru_tests": "*RandomEdit*",
    "eeprom_tests": "*Threads*:*PowerCut*",
    "field_tests": "*EveryRecordClass*",
    "fault_tests": "*",
    "model_tests": "*",
}


def steps_of(folder):
    programs = PROGRAMS[folder]
    quick = [Step(p, "-" + SLOW[p] if p in SLOW else "*") for p in programs if SLOW.get(p) != "*"]
    slow = [Step(p, SLOW[p]) for p in programs if p in SLOW]
    sanitized = [Step(s.program, s.filter, SANITIZED) for s in quick]
    return quick + slow + sanitized


def all_mutants(tree, files):
    """By folder, of the copy's sources: parsed as they are compiled, headers like a source."""
    commands = json.loads((tree.configure(PLAIN) / "compile_commands.json").read_text())
    arguments = {}
    for entry in commands:
        path = Path(entry["file"])
        if path.is_relative_to(tree.sources / "recordkit"):
            words = shlex.split(entry["command"])[1:]
            drop = words.index("-o")
            arguments[path.parent.name] = ["-x", "c++"] + words[:drop]
    found = {}
    for folder in PROGRAMS:
        names = sorted(str(p.relative_to(tree.sources))
                       for p in (tree.sources / "recordkit" / folder).iterdir())
        for name in names:
            if not files or name in files:
                found.setdefault(folder, []).extend(
                    mutants_of(tree.sources, name, arguments[folder]))
    return {folder: mutants for folder, mutants in found.items() if mutants}


def quotas(found, count):
    """How many of each folder: in proportion, and no folder is left out."""
    total = sum(len(mutants) for mutants in found.values())
    count = min(count, total)
    least = max(1, count // (3 * len(found)))
    shares = {folder: min(len(mutants), max(least, count * len(mutants) // total))
              for folder, mutants in found.items()}
    while sum(shares.values()) != count:
        step = 1 if sum(shares.values()) < count else -1
        # Where the share is furthest from the proportion, and there is room.
        open_ones = [f for f in shares
                     if (shares[f] < len(found[f]) if step > 0 else shares[f] > least)]
        if not open_ones:
            break
        off = lambda f: shares[f] / len(found[f])
        chosen = min(open_ones, key=off) if step > 0 else max(open_ones, key=off)
        shares[chosen] += step
    return shares


class Equivalents:
    """The file of mutants that change nothing one could test: blocks of

        FILE PLACE [#N]      the N-th of several whose lines read the same
        - the line as it is
        + the line as it becomes
        the reason
    """

    def __init__(self, path):
        self.entries = {}
        block = []
        for line in path.read_text().splitlines() + [""]:
            if line.startswith("#"):
                continue
            if line:
                block.append(line)
            elif block:
                self.take(block)
                block = []

    def take(self, block):
        words = block[0].split()
        nth = int(words.pop()[1:]) if words[-1].startswith("#") else 0
        if len(block) < 4 or block[1][:2] != "- " or block[2][:1] != "+":
            raise SystemExit(f"{EQUIVALENT.name}: not an entry:\n" + "\n".join(block))
        key = (words[0], " ".join(words[1:]), block[1][2:].strip(), block[2][1:].strip(), nth)
        self.entries[key] = " ".join(block[3:])

    @staticmethod
    def key(mutant):
        return (*mutant.identity, mutant.nth if mutant.of > 1 else 0)

    def contains(self, mutant):
        return self.key(mutant) in self.entries

    def stale(self, found, files):
        known = {self.key(m) for mutants in found.values() for m in mutants}
        return [key for key in self.entries
                if key not in known and (not files or key[0] in files)]


def entry_text(mutant):
    nth = f" #{mutant.nth}" if mutant.of > 1 else ""
    return f"{mutant.file} {mutant.place}{nth}\n- {mutant.before}\n+ {mutant.after}"


def shuffled(mutants, chance):
    """One mutant of each position, then those that remain: a number has two, most have one."""
    rounds = {}
    taken = {}
    chance.shuffle(mutants := list(mutants))
    for mutant in mutants:
        position = (mutant.file, mutant.start, mutant.end)
        taken[position] = taken.get(position, 0) + 1
        rounds.setdefault(taken[position], []).append(mutant)
    return [mutant for number in sorted(rounds) for mutant in rounds[number]]


class Run:
    """The sample, what is still to be done of it, and what came out."""

    def __init__(self, found, shares, seed, equivalents):
        self.lock = threading.Lock()
        self.equivalents = equivalents
        self.reserve = {}
        self.pending = []
        for folder, mutants in found.items():
            order = shuffled(mutants, random.Random(f"{seed} {folder}"))
            self.pending += order[:shares[folder]]
            self.reserve[folder] = order[shares[folder]:]
        # Neighbours in a file after each other: what one builds again, the next does too.
        self.pending.sort()
        self.total = len(self.pending)
        self.results = {folder: {"killed": 0, "listed": 0, "survived": 0} for folder in found}
        self.survivors = []
        self.timed_out = []
        self.not_built = 0
        self.failure = None

    def take(self):
        with self.lock:
            return self.pending.pop(0) if self.pending and self.failure is None else None

    def done(self):
        return sum(sum(counts.values()) for counts in self.results.values())

    def report(self, mutant, outcome, text):
        with self.lock:
            self.results[mutant.folder][outcome] += 1
            print(f"[{self.done()}/{self.total}] {mutant.file}:{mutant.line}: {mutant.change}: "
                  f"{text}", flush=True)

    def replace(self, mutant):
        with self.lock:
            self.not_built += 1
            if self.reserve[mutant.folder]:
                self.pending.append(self.reserve[mutant.folder].pop(0))
                self.pending.sort()
            else:
                self.total -= 1

    def work(self, tree):
        try:
            while (mutant := self.take()) is not None:
                self.try_mutant(tree, mutant)
        except Interrupted:
            pass
        except TestsFail as failure:
            self.failure = str(failure)
        except Exception as failure:  # a fault of this program ends the run, not one thread
            self.failure = repr(failure)
            raise

    def try_mutant(self, tree, mutant):
        if self.equivalents.contains(mutant):
            self.report(mutant, "listed", "listed as equivalent")
            return
        try:
            killer = tree.try_mutant(mutant, steps_of(mutant.folder))
        except DoesNotBuild:
            self.replace(mutant)
            return
        if killer is None:
            self.survivors.append(mutant)
            self.report(mutant, "survived", "SURVIVED")
            return
        test, is_timeout = killer
        if is_timeout:
            self.timed_out.append((mutant, test))
        self.report(mutant, "killed", f"killed by {test}")


def print_results(sample):
    for mutant, test in sorted(sample.timed_out):
        print(f"\nkilled by the time limit: {mutant.file}:{mutant.line}: {mutant.change}: {test}")
    for mutant in sorted(sample.survivors):
        print(f"\nsurvived: {mutant.file}:{mutant.line}\n{entry_text(mutant)}")
    print(f"\n{sample.not_built} more did not compile; "
          f"{len(sample.timed_out)} were killed by the time limit")
    print(f"\n{'folder':10} {'killed':>8} {'listed':>8} {'survived':>8}")
    for folder, counts in sample.results.items():
        print(f"{folder:10} {counts['killed']:8} {counts['listed']:8} {counts['survived']:8}")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="./dev mutate")
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--list", action="store_true",
                        help="print all that can be changed, and change nothing")
    parser.add_argument("files", nargs="*", metavar="FILE")
    return parser.parse_args()


def lock_work():
    """Two runs in the same copies would change each other's files."""
    WORK.mkdir(parents=True, exist_ok=True)
    lock = open(WORK / "lock", "w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        raise SystemExit(f"dev mutate: another run uses {WORK}") from None
    return lock


def main():
    options = parse_arguments()
    _lock = lock_work()  # until the end
    # In memory where that can be: the tests wait for the disk more than for anything else.
    with tempfile.TemporaryDirectory(prefix="recordkit-mutate-",
                                     dir=MEMORY if MEMORY.is_dir() else WORK) as scratch:
        return run(options, Path(scratch))


def run(options, scratch):
    processes = Processes()
    trees = [Tree(SOURCE, WORK / str(n + 1), scratch / str(n + 1), processes)
             for n in range(WORKERS)]
    files = set(options.files)
    for file in files:
        if not (SOURCE / file).is_file() or file.split("/")[1:2] not in [[f] for f in PROGRAMS]:
            raise SystemExit(f"dev mutate: {file} is not a source that is mutated")
    found = all_mutants(trees[0], files)
    if options.list:
        for mutants in found.values():
            for mutant in mutants:
                print(f"{mutant.file}:{mutant.line}: {mutant.place}: {mutant.change}")
        return 0
    equivalents = Equivalents(EQUIVALENT)
    sample = Run(found, quotas(found, options.count), options.seed, equivalents)
    print(f"{sample.total} of {sum(map(len, found.values()))} mutants, seed {options.seed}",
          flush=True)
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    threads = [threading.Thread(target=sample.work, args=(tree,)) for tree in trees]
    is_interrupted = False
    try:
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    except KeyboardInterrupt:
        is_interrupted = True
        processes.stop()
        for thread in threads:
            thread.join()
    if sample.failure is not None:
        print(f"dev mutate: {sample.failure}", file=sys.stderr)
        return 3
    print_results(sample)
    stale = equivalents.stale(found, files)
    for file, place, before, after, _ in stale:
        print(f"\n{EQUIVALENT.name}: nothing matches\n{file} {place}\n- {before}\n+ {after}")
    sums = {key: sum(counts[key] for counts in sample.results.values())
            for key in ("killed", "listed", "survived")}
    print(f"\n{sums['killed']} of {sample.done()} mutants killed, {sums['listed']} listed as "
          f"equivalent, {sums['survived']} survive")
    if is_interrupted:
        return 130
    return 1 if sums["survived"] or stale else 0


if __name__ == "__main__":
    sys.exit(main())
