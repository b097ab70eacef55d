"""Programs for Windows, run beside programs of the machine that builds."""

import contextlib
import os
import subprocess
import sys

WINE = os.environ.get("BVCONN_WINE", "/usr/lib/wine/wine64")


def skip(reason):
    print("skipped: " + reason)
    sys.exit(77)


class WindowsHost:
    """PROCESSOR is the one of the programs, SOURCE and BUILD are the project's folder and the one that
    programs run in."""

    def __init__(self, processor, source, build):
        self.processor, self.source, self.build = processor, source, build
        self.system = "C:/windows/system32/" if processor == "x86_64" else "C:/windows/syswow64/"
        if not os.access(WINE, os.X_OK):
            skip(f"there is no {WINE} here")
        os.makedirs(build, exist_ok=True)

    def run(self, *command):
        # Local time is that of the other programs, and numbers are written with a point.
        environment = {"BVCONN_WINE_SECONDS": "240", **os.environ, "TZ": "UTC", "LC_ALL": "C.UTF-8"}
        wine_32 = os.path.join(self.source, "build", "windows", "wine32")
        if self.processor == "i686" and os.path.isdir(wine_32):
            environment.setdefault("BVCONN_WINE_32", wine_32)
        return subprocess.run([os.path.join(self.source, "tests", "windows", "run"), *command],
                              cwd=self.build, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, text=True, errors="replace", check=False)

    def script(self, path, *words):
        return self.run(self.system + "cscript.exe", "//nologo", path, *words)

    @contextlib.contextmanager
    def registered(self, library):
        done = self.run(self.system + "regsvr32.exe", "/s", "Z:" + library)
        if done.returncode != 0:
            sys.exit(f"the component is not registered: {done.returncode}")
        try:
            yield
        finally:
            self.run(self.system + "regsvr32.exe", "/s", "/u", "Z:" + library)
