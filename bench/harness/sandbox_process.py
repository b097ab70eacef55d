"""A sandbox that is loaded, and the program that loads it."""

import json
import os
import subprocess
import tempfile
from contextlib import contextmanager
from pathlib import Path

from .world import Program


class Sandbox:
    """A process of bvsandbox, bound to these cores."""

    def __init__(self, program, cores, *options):
        self._process = subprocess.Popen(
            [program, "--port", "0", "--until-eof", *options],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
            preexec_fn=lambda: os.sched_setaffinity(0, cores),
        )
        line = self._process.stdout.readline()
        if not line:
            raise RuntimeError(f"{program} does not start")
        self.port = json.loads(line)["port"]
        self._proc = Path("/proc", str(self._process.pid))

    def cpu_ns(self):
        """What all its threads took of the processor."""
        threads = (self._proc / "task").iterdir()
        return sum(int((each / "schedstat").read_text().split()[0]) for each in threads)

    def resident(self):
        return int((self._proc / "statm").read_text().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    def descriptors(self):
        return len(list((self._proc / "fd").iterdir()))

    def close(self):
        self._process.stdin.close()
        status = self._process.wait()
        self._process.stdout.close()
        if status != 0:
            raise RuntimeError(f"the sandbox ended with {status}")


@contextmanager
def sandbox(program, cores, *options):
    one = Sandbox(program, cores, *options)
    try:
        yield one
    finally:
        one.close()


class Load:
    """Keeps connections to sandboxes, and asks over them."""

    def __init__(self, program, core, folder):
        self._folder = folder
        self._program = Program(["taskset", "-c", core, program], dict(os.environ))
        self._files = {}

    def open(self, connections, *sandboxes):
        self._program.ask("open", connections, *(each.port for each in sandboxes))

    def ask(self, requests, count=10**9, milliseconds=10**6):
        """Sends the requests by turns until so many are sent or so long is over."""
        files = []
        for request in requests:
            file = self._files.setdefault(request, Path(self._folder, f"{len(self._files)}.http"))
            if not file.exists():
                file.write_bytes(request)
            files.append(file)
        answer = self._program.ask("ask", count, milliseconds, *files)
        if answer["lost"] or answer["good"] != answer["answered"] or not answer["answered"]:
            raise RuntimeError(f"not all requests were answered well: {answer}")
        return answer

    def close(self):
        self._program.close()


@contextmanager
def load(program, core):
    with tempfile.TemporaryDirectory(prefix="bvconn-bench-") as folder:
        one = Load(program, core, folder)
        try:
            yield one
        finally:
            one.close()
