"""A sandbox of one's own, and the library's tool to make calls of it."""

import http.client
import json
import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.environ.get("BVCONN_BUILD", os.path.join(ROOT, "build/dev"))
SANDBOX = os.path.join(BUILD, "sandbox/bvsandbox")
TOOL = os.path.join(BUILD, "tools/bvconn/bvconn")


class Sandbox:
    def __init__(self, *options, port=0):
        self._process = subprocess.Popen(
            [SANDBOX, "--port", str(port), "--until-eof", *options], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        self.port = json.loads(self._process.stdout.readline())["port"]
        self.url = f"http://127.0.0.1:{self.port}"

    def close(self):
        self._process.kill()
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()

    def call(self, operation, *arguments):
        """Makes a call by the library; gives its status and what it says."""
        done = subprocess.run(
            [TOOL, "call", operation, f"aServerURL={self.url}/soap", "aSessionID=ANNA", *arguments],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, timeout=60)
        return done.returncode, done.stdout

    def ask(self, method, path, body=None, headers=None):
        """One request; gives status, headers and body."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        try:
            connection.request(method, path, body, headers or {})
            reply = connection.getresponse()
            return reply.status, reply.headers, reply.read().decode()
        finally:
            connection.close()

    def get(self, path):
        return json.loads(self.ask("GET", path)[2])

    def fill_journal(self, count):
        """So many exchanges, on one connection."""
        body = ('<Envelope xmlns="http://schemas.xmlsoap.org/soap/envelope/"><Body/></Envelope>')
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        for _ in range(count):
            connection.request("POST", "/soap", body, {"Content-Type": "text/xml"})
            connection.getresponse().read()
        connection.close()
