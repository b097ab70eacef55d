"""Builds the library with one change in it and runs the tests that should notice."""

import os
import resource
import signal
import subprocess
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

# The tests of what is changed, by where it is: those nearest to it, which tell most of it and soon.
NEAREST = [
    ("bvconn/core/", ["core_tests", "operation_tests"]),
    ("bvconn/operation/", ["operation_tests", "core_tests"]),
    ("bvconn/connectors/", ["connector_tests"]),
    ("bvconn/platform/xml/", ["xml_test", "soap_test"]),
    ("bvconn/platform/soap/", ["soap_test", "soap_memory_test", "xml_test"]),
    ("bvconn/platform/http/", ["http_tests", "http_memory_test"]),
    ("bvconn/platform/logging/", ["files_test"]),
    ("bvconn/platform/settings/", ["files_test"]),
    ("bvconn/platform/torvexlib/", ["torvexlib_test"]),
    ("bvconn/platform/exchange/", ["exchange_tests", "record_memory_test"]),
    ("bvconn/platform/conversions/", ["conversions_test", "soap_test"]),
    ("bvconn/", ["core_tests", "dal_tests", "words_tests"]),
]
# Then what sees all operations, or the library as a whole.
WIDER = ["words_tests", "observation_tests", "automation_tests", "exchange_tests", "live_tests",
         "testing_tests", "memory_tests", "failing_calls_tests", "tool_parts_tests"]
# What these bound is time, of which a busy machine decides.
LEFT_OUT = "--gtest_filter=-XmlEffort.*"

MEMORY = 8 << 30  # A change that takes memory without end is not to take the machine's.


class Trial:
    VERDICTS = ["killed", "time-out", "survived", "not built"]

    def __init__(self, tree):
        self.tree = tree
        self.build = tree / "build" / "dev"
        self.bounds = {}  # by what is run, in seconds
        self.jobs = os.environ.get("BVCONN_JOBS", str(os.cpu_count()))

    def prepare(self):
        """Builds the tree as it is. Its tests have to pass, and show how long they take."""
        if not (self.build / "build.ninja").exists():
            subprocess.run(["cmake", "--preset", "dev"], cwd=self.tree, check=True,
                           stdout=subprocess.DEVNULL)
        programs = sorted({name for _, names in NEAREST for name in names} | set(WIDER))
        print("Building and testing the tree as it is", flush=True)
        if not self._built([*programs, "wire_runner"], quiet=False):
            raise SystemExit("The tree does not build")
        self.programs = {path.name: path for path in (self.build / "tests").glob("*/*")
                         if path.is_file() and os.access(path, os.X_OK)}
        for name in programs:
            start = time.monotonic()
            if self._failed(self._command(name), 900):
                raise SystemExit(f"{name} fails on the tree as it is")
            self.bounds[name] = 20 + 4 * (time.monotonic() - start)
        if self._wire_failure(self._wire_files("")):
            raise SystemExit("A wire file fails on the tree as it is")

    def of(self, mutant):
        """The verdict, and what noticed the change."""
        path = self.tree / mutant.file
        whole = path.read_text()
        assert whole[mutant.start : mutant.end] == mutant.before
        try:
            path.write_text(whole[: mutant.start] + mutant.after + whole[mutant.end :])
            return self._verdict(mutant)
        finally:
            path.write_text(whole)

    def _verdict(self, mutant):
        nearest = next(names for below, names in NEAREST if mutant.file.startswith(below))
        for name in nearest:
            if not self._built([name]):
                return "not built", ""
            if failure := self._failed(self._command(name), self.bounds[name]):
                return failure, name
        # A change of the rooms below a test's may not compile; it shows with the library at last.
        if not self._built(["wire_runner"]):
            return "not built", ""
        if file := self._wire_failure(self._wire_files(Path(mutant.file).stem)):
            return "killed", file
        for name in WIDER:
            if name in nearest:
                continue
            if not self._built([name]):
                return "not built", ""
            if failure := self._failed(self._command(name), self.bounds[name]):
                return failure, name
        return "survived", ""

    def _command(self, name):
        return [str(self.programs[name]), "--gtest_brief=1", "--gtest_fail_fast", LEFT_OUT]

    def _wire_files(self, stem):
        """All of them, those of the changed class first."""
        cls = stem.replace("_", "").lower()
        files = sorted((self.tree / "tests" / "wire").rglob("*.wire"))
        return sorted(files, key=lambda file: not file.name.lower().startswith(cls + "."))

    def _wire_failure(self, files):
        runner = str(self.programs["wire_runner"])
        parts = [files[at : at + 10] for at in range(0, len(files), 10)]
        with ThreadPoolExecutor(int(self.jobs)) as pool:
            fails = pool.map(lambda part: self._failed([runner, *map(str, part)], 60), parts)
            for part, failure in zip(parts, fails):
                if failure:
                    pool.shutdown(cancel_futures=True)
                    return part[0].name + " and next" if len(part) > 1 else part[0].name
        return None

    def _built(self, targets, quiet=True):
        result = subprocess.run(
            ["cmake", "--build", str(self.build), "-j", self.jobs, "--", *targets],
            capture_output=True, text=True,
        )
        if result.returncode and not quiet:
            print(result.stdout[-4000:])
        return result.returncode == 0

    def _failed(self, command, seconds):
        """What became of it, where it did not pass: "killed" or "time-out"."""
        def bounded():
            resource.setrlimit(resource.RLIMIT_DATA, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        with tempfile.TemporaryDirectory() as folder:
            process = subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                                       start_new_session=True, preexec_fn=bounded)
            try:
                return "killed" if process.wait(timeout=seconds) else None
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                return "time-out"
