# SPDX-License-Identifier: Apache-2.0
"""A copy of the sources with its builds, in which mutants are tried."""
import os
import re
import shutil
import signal
import subprocess
import threading
import time
from dataclasses import dataclass

# The quickest build that fails where the tests do, and the one that sees what they cannot.
PLAIN = "plain"
SANITIZED = "sanitized"
CONFIGURATIONS = {
    PLAIN: [],
    SANITIZED: ["-DRECORDKIT_SANITIZE=address,undefined"],
}
COMMON_CONFIGURATION = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_COMPILER=clang++",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w -D_GLIBCXX_ASSERTIONS",
                        "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]

SHORTEST_LIMIT = 10  # seconds
LIMIT_FACTOR = 4     # of what the tests take without a mutant
BUILD_LIMIT = 300
FILE_BLOCKS = 131072        # of 512 bytes: 64 MiB
MEMORY_KILOBYTES = 4194304  # of addresses; the sanitizers need more by themselves


@dataclass(frozen=True)
class Step:
    """Tests of one program."""
    program: str
    filter: str = "*"
    configuration: str = PLAIN


class DoesNotBuild(Exception):
    pass


class TestsFail(Exception):
    """Without a mutant, so that nothing can be said about mutants."""


class Interrupted(Exception):
    pass


class Processes:
    """Those that run, so that an interruption ends them."""

    def __init__(self):
        self.lock = threading.Lock()
        self.running = set()
        self.is_stopped = False

    def run(self, command, output, limit, **options):
        """Exit status; None when the limit was reached. Nothing that it started stays."""
        with open(output, "wb") as out:
            with self.lock:
                if self.is_stopped:
                    raise Interrupted
                process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=out,
                                           stderr=subprocess.STDOUT, start_new_session=True,
                                           **options)
                self.running.add(process)
            try:
                status = process.wait(limit)
            except subprocess.TimeoutExpired:
                status = None
            finally:
                self.end(process)
                process.wait()
                with self.lock:
                    self.running.discard(process)
        if self.is_stopped:
            raise Interrupted
        return status

    @staticmethod
    def end(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def stop(self):
        with self.lock:
            self.is_stopped = True
            for process in self.running:
                self.end(process)


class Tree:
    """Sources and builds of one worker, below a folder of its own; the tests run in `scratch`."""

    def __init__(self, source, folder, scratch, processes):
        self.source = source
        self.sources = folder / "sources"
        self.builds = folder
        self.scratch = scratch
        self.output = folder / "output"
        self.processes = processes
        self.limits = {}
        self.changed = None
        self.configured = set()
        folder.mkdir(parents=True, exist_ok=True)
        self.synchronise()

    def synchronise(self):
        """Makes the copy equal to the sources; what is equal stays, and so do its objects."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"],
                                cwd=self.source, check=True, capture_output=True).stdout
        wanted = {name for name in listed.decode().split("\0")
                  if name and (self.source / name).is_file()}
        for old in [p for p in self.sources.rglob("*") if p.is_file()]:
            if str(old.relative_to(self.sources)) not in wanted:
                old.unlink()
        for name in wanted:
            original, copy = self.source / name, self.sources / name
            if not copy.is_file() or copy.read_bytes() != original.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(original, copy)

    def configure(self, configuration):
        build = self.builds / configuration
        if configuration in self.configured:
            return build
        public = self.source.parent / "shared" / "data" / "public"
        command = ["cmake", "-S", self.sources, "-B", build, f"-DRECORDKIT_PUBLIC_DATA={public}",
                   *COMMON_CONFIGURATION, *CONFIGURATIONS[configuration]]
        if self.processes.run(command, self.output, BUILD_LIMIT) != 0:
            raise RuntimeError(self.output.read_text(errors="replace"))
        self.configured.add(configuration)
        return build

    def mutate(self, mutant):
        path = self.sources / mutant.file
        content = path.read_bytes()
        self.changed = (path, content)
        path.write_bytes(content[:mutant.start] + mutant.replacement.encode()
                         + content[mutant.end:])

    def restore(self):
        if self.changed is not None:
            path, content = self.changed
            path.write_bytes(content)
            self.changed = None

    def try_mutant(self, mutant, steps):
        """The test that killed it, and whether the time limit did; None when it survives."""
        try:
            self.mutate(mutant)
            for step in steps:
                if step not in self.limits:
                    self.restore()
                    self.limits[step] = self.measure(step)
                    self.mutate(mutant)
                self.build(step.configuration, step.program)
                status = self.run_tests(step, self.limits[step])
                if status is None:
                    return f"{self.last_test(step)} (time limit)", True
                if status != 0:
                    return self.last_test(step), False
            return None
        finally:
            self.restore()

    def measure(self, step):
        """How long the tests may take; they pass without a mutant."""
        try:
            self.build(step.configuration, step.program)
        except DoesNotBuild as failure:
            raise TestsFail(f"{step.program} does not build without a mutant:\n{failure}") from None
        begun = time.monotonic()
        if self.run_tests(step, BUILD_LIMIT * 2) != 0:
            text = self.output.read_text(errors="replace")
            first = text[max(0, text.find(": Failure") - 200):][:3000]
            raise TestsFail(f"{step.program} fails without a mutant:\n{first}")
        return max(SHORTEST_LIMIT, LIMIT_FACTOR * (time.monotonic() - begun))

    def build(self, configuration, target):
        build = self.configure(configuration)
        if self.processes.run(["ninja", "-C", build, "-j", "1", target], self.output,
                              BUILD_LIMIT) != 0:
            raise DoesNotBuild(self.output.read_text(errors="replace"))

    def run_tests(self, step, limit):
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        limits = f"ulimit -c 0; ulimit -f {FILE_BLOCKS}; "
        if step.configuration == PLAIN:
            limits += f"ulimit -v {MEMORY_KILOBYTES}; "
        program = self.builds / step.configuration / "tests" / step.program
        environment = {**os.environ, "TMPDIR": str(self.scratch),
                       "ASAN_OPTIONS": "hard_rss_limit_mb=4096:allocator_may_return_null=0"}
        return self.processes.run(
            ["sh", "-c", limits + 'exec "$@"', "sh", program, "--gtest_fail_fast=1",
             f"--gtest_filter={step.filter}"],
            self.output, limit, cwd=self.scratch, env=environment)

    def last_test(self, step):
        """The test that failed, or the one that ran when the program ended."""
        text = self.output.read_text(errors="replace")
        found = re.findall(r"^\[  FAILED  \] (\S+?),? ", text, re.M) \
            or re.findall(r"^\[ RUN      \] (\S+)", text, re.M)[-1:] or ["its start"]
        sanitized = ", sanitized" if step.configuration == SANITIZED else ""
        return f"{step.program}{sanitized}: {found[0]}"
