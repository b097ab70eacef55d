"""A PostgreSQL server of one's own: data and socket in a folder that goes with it, no port of TCP."""

import os
import pwd
import shutil
import subprocess
import tempfile
import time
from contextlib import contextmanager
from pathlib import Path


def programs():
    """The folder with the newest server's programs, which Debian keeps off the path; None without."""
    found = [each for each in Path("/usr/lib/postgresql").glob("*/bin") if (each / "initdb").exists()]
    if found:
        return max(found, key=lambda each: int(each.parent.name) if each.parent.name.isdigit() else 0)
    elsewhere = shutil.which("initdb")
    return Path(elsewhere).parent if elsewhere else None


class Postgres:
    def __init__(self, folder, run):
        self._folder, self._run = folder, run

    def database(self, name):
        """The address of a new database."""
        self._run("createdb", "-h", str(self._folder), "-U", "bvsandbox", name).check_returncode()
        return f"postgresql://bvsandbox@/{name}?host={self._folder}"


@contextmanager
def postgres():
    """A server, or None where there is none to be had. It keeps what it is told on the disk as ever."""
    bin_folder = programs()
    if not bin_folder:
        yield None
        return
    # As root it would not run.
    user = pwd.getpwnam("nobody") if os.geteuid() == 0 else None
    owner = {"user": user.pw_uid, "group": user.pw_gid, "extra_groups": []} if user else {}
    folder = Path(tempfile.mkdtemp(prefix="bvconn-bench-pg-"))
    log = folder / "log"

    def run(program, *arguments):
        return subprocess.run(
            [bin_folder / program, *arguments],
            cwd=folder,
            capture_output=True,
            text=True,
            check=False,
            **owner,
        )

    server = None
    try:
        if user:
            shutil.chown(folder, user.pw_uid, user.pw_gid)
        made = run("initdb", "-D", "data", "-U", "bvsandbox", "-A", "trust", "-E", "UTF8", "--locale=C.UTF-8")
        if made.returncode != 0:
            raise RuntimeError(f"initdb failed: {made.stderr}")
        with open(log, "wb") as output:
            server = subprocess.Popen(
                [bin_folder / "postgres", "-D", "data", "-k", folder, "-c", "listen_addresses="],
                cwd=folder,
                stdout=output,
                stderr=output,
                **owner,
            )
        deadline = time.monotonic() + 60
        while run("pg_isready", "-h", str(folder)).returncode != 0:
            if server.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError(f"PostgreSQL does not start: {log.read_text()}")
            time.sleep(0.1)
        yield Postgres(folder, run)
    finally:
        if server:
            server.terminate()
            server.wait()
        shutil.rmtree(folder)
