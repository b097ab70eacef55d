"""Where the programs run: the core, the files of an application, the server, and the peers."""

import json
import os
import subprocess
import tempfile
from contextlib import contextmanager
from pathlib import Path

HERE = Path(__file__).resolve().parent.parent
SETTINGS_KEY = "['Software\\Brimvale\\Torvex\\AppData']\n"


@contextmanager
def application_files():
    """An environment with the files that an application has after its first call, and no variable
    that changes what is logged."""
    with tempfile.TemporaryDirectory(prefix="bvconn-bench-") as folder:
        user, machine = Path(folder, "user.toml"), Path(folder, "machine.toml")
        user.write_text(SETTINGS_KEY + "TraceSoapTraffic = 0\n")
        machine.write_text(SETTINGS_KEY + "defaultTimeOut = 60000\n")
        environment = {k: v for k, v in os.environ.items() if not k.startswith("BVCONN_")}
        environment |= {
            "BVCONN_USER_SETTINGS": str(user),
            "BVCONN_MACHINE_SETTINGS": str(machine),
            "BVCONN_LOG_FILE": str(Path(folder, "bvconn.log")),
        }
        yield environment


class Program:
    """A program that answers each line with one of JSON."""

    def __init__(self, command, environment):
        self._name = Path(command[-3] if len(command) > 2 else command[0]).name
        self._process = subprocess.Popen(
            [str(part) for part in command],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
            env=environment,
        )

    def ask(self, *words):
        self._process.stdin.write(" ".join(str(word) for word in words) + "\n")
        self._process.stdin.flush()
        line = self._process.stdout.readline()
        if not line:
            raise RuntimeError(f"{self._name} ended at: {' '.join(map(str, words))}")
        return json.loads(line)

    def close(self):
        self._process.stdin.close()
        self._process.wait()
        self._process.stdout.close()


@contextmanager
def server(build, core, delay_ms=0):
    """The server with canned replies; gives its URL."""
    process = subprocess.Popen(
        [build / "peers_server", str(core), str(delay_ms)],
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        text=True,
    )
    try:
        yield process.stdout.readline().strip()
    finally:
        process.stdin.close()
        process.wait()
        process.stdout.close()


def last_core():
    """Of the cores that this process may use, the one that the system itself uses least."""
    return max(os.sched_getaffinity(0))
