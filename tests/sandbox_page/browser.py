"""Chromium without a screen, driven as a person would: by keys, and by looking at what is there."""

import base64
import json
import os
import shutil
import subprocess
import tempfile
import time

from websocket import WebSocket

PROGRAM = next(filter(None, map(shutil.which, ("chromium", "chromium-browser", "google-chrome"))),
               None)
PATIENCE_S = 40

KEYS = {"Tab": (9, ""), "Enter": (13, "\r"), "Escape": (27, ""), "ArrowUp": (38, ""),
        "ArrowDown": (40, ""), "Home": (36, ""), "End": (35, ""), " ": (32, " ")}
SHIFT = 8


class Browser:
    def __init__(self):
        self._profile = tempfile.mkdtemp()
        self._process = subprocess.Popen(
            [PROGRAM, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             "--no-first-run", "--hide-scrollbars", "--remote-debugging-port=0",
             "--force-color-profile=srgb", "--user-data-dir=" + self._profile, "about:blank"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # Set by what a page does: dialogs that it opened, what its console says.
        self.dialogs = []
        self.complaints = []
        self._number = 0
        self._session = None
        try:
            self._socket = WebSocket(self._address(), PATIENCE_S)
            target = self.ask("Target.createTarget", url="about:blank")["targetId"]
            self._session = self.ask("Target.attachToTarget", targetId=target,
                                     flatten=True)["sessionId"]
            for domain in ("Page", "Runtime", "Log"):
                self.ask(domain + ".enable")
        except Exception:
            self.close()
            raise

    def _address(self):
        file = os.path.join(self._profile, "DevToolsActivePort")
        deadline = time.monotonic() + PATIENCE_S
        while time.monotonic() < deadline:
            if self._process.poll() is not None:
                break
            if os.path.exists(file):
                with open(file, encoding="ascii") as lines:
                    text = lines.read().split("\n")
                if len(text) > 1 and text[1]:
                    return f"ws://127.0.0.1:{text[0]}{text[1]}"
            time.sleep(0.05)
        raise ConnectionError("the browser did not come up")

    def close(self):
        self._process.kill()
        self._process.wait()
        shutil.rmtree(self._profile, ignore_errors=True)

    def _note(self, message):
        method, what = message["method"], message["params"]
        if method == "Page.javascriptDialogOpening":
            self.dialogs.append(what["message"])
        if method == "Runtime.exceptionThrown":
            self.complaints.append(json.dumps(what["exceptionDetails"]))
        if method == "Log.entryAdded" and what["entry"]["level"] == "error":
            self.complaints.append(what["entry"]["text"])

    def ask(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        self._socket.send(json.dumps(message))
        while True:
            answer = json.loads(self._socket.receive())
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            if "method" in answer:
                self._note(answer)

    def run(self, script):
        """The value of an expression in the page; of a promise, what it gives in the end."""
        answer = self.ask("Runtime.evaluate", expression=script, returnByValue=True,
                          awaitPromise=True, allowUnsafeEvalBlockedByCSP=False)
        if "exceptionDetails" in answer:
            raise RuntimeError(json.dumps(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def until(self, script, patience_s=PATIENCE_S):
        """The first value of an expression that is true; an AssertionError where there is none."""
        deadline = time.monotonic() + patience_s
        while time.monotonic() < deadline:
            # An element has no value of its own outside of the page.
            value = self.run(f"((found) => found instanceof Node || found)({script})")
            if value:
                return value
            time.sleep(0.05)
        raise AssertionError(f"{script} did not come true; the page says: {self.text()}")

    def open(self, url):
        self.dialogs.clear()
        self.complaints.clear()
        self.ask("Page.navigate", url="about:blank")
        self.ask("Page.navigate", url=url)
        self.until("document.readyState === 'complete'")

    def text(self, selector="body"):
        return self.run(f"(document.querySelector({json.dumps(selector)}) ?? {{}}).innerText") or ""

    def press(self, key, times=1, modifiers=0):
        code, text = KEYS[key]
        for _ in range(times):
            for kind in ("keyDown", "keyUp"):
                self.ask("Input.dispatchKeyEvent", type=kind, key=key, code=key, modifiers=modifiers,
                         windowsVirtualKeyCode=code, **({"text": text} if kind == "keyDown" else {}))

    def type(self, text):
        self.ask("Input.insertText", text=text)

    def tab_to(self, script, most=80):
        """Presses Tab until the element that has the focus, `at`, is as the expression says."""
        for _ in range(most):
            self.press("Tab")
            if self.run(f"((at) => Boolean({script}))(document.activeElement)"):
                return
        raise AssertionError(f"Tab does not come to where {script}")

    def size(self, width, height):
        self.ask("Emulation.setDeviceMetricsOverride", width=width, height=height,
                 deviceScaleFactor=1, mobile=False)

    def scheme(self, name):
        self.ask("Emulation.setEmulatedMedia",
                 features=[{"name": "prefers-color-scheme", "value": name}])

    def picture(self):
        return base64.b64decode(self.ask("Page.captureScreenshot", format="png")["data"])
