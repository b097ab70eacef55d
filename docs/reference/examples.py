"""Calls each operation on a sandbox that was just started, and keeps what came back."""

import json
import os
import re
import shlex
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass

from interface import SESSION

SHOWN_URL = "http://127.0.0.1:8080"
SHOWN_LINES = 40


@dataclass
class Example:
    command: str
    output: str
    status: int
    sent: str = ""  # on each of its routes, to the letter


def read_values(path):
    """Lines `name = value` or `name := value`; a name may be Class.argument or
    Class.Operation.argument. Each value comes with its sign."""
    values = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                name, sign, value = re.split(r" (:?=) ?", line.rstrip("\n"), maxsplit=1)
                values[name] = sign + value
    return values


def arguments_of(cls, member, values):
    """The arguments that the command line has to give: the required ones, and those named whole."""
    given = []
    for argument in member.get("arguments", []):
        name = argument["name"]
        whole = f"{cls}.{member['name']}.{name}"
        if whole in values:
            value = values[whole]
        elif argument["optional"] or name in ("aServerURL", "aSessionID"):
            continue
        else:
            value = values.get(f"{cls}.{name}", values.get(name))
        if value is None:
            raise SystemExit(f"calls.txt has no value for {whole}")
        given.append(name + value)
    return given


def shown(word):
    return word if re.fullmatch(r"[\w=.,:/@%+-]+", word) else shlex.quote(word)


def call_line(member, values):
    """The call of an operation; what belongs to the thread's session needs no server."""
    whole = values.get(member.whole_name)
    if whole:
        return whole.removeprefix("=").replace(" '{", " \\\n  '{")
    lines = [f"bvconn call {member.whole_name}"]
    if member.cls != SESSION:
        lines[0] += f" --server {SHOWN_URL}/soap --session S"
    if member.needs_dal() and member.cls != SESSION:
        lines.append(f"  --dal {SHOWN_URL}/dal --user anna --password-file <(echo secret)")
    for argument in arguments_of(member.cls, member.data, values):
        if len(lines[-1]) + len(shown(argument)) > 90:
            lines.append(" ")
        lines[-1] += " " + shown(argument)
    return " \\\n".join(lines)


def batch_line(member, values):
    """How callers by name read a property, or write one that cannot be read."""
    request = {"id": 1, "get": member.whole_name} if member.data["readable"] else \
        {"id": 1, "set": member.whole_name, "value": values[member.whole_name].removeprefix("=")}
    return f"echo '{json.dumps(request, separators=(',', ':'))}' | bvconn batch"


def has_example(member):
    """Events happen, and properties of a connector need an object of it."""
    return "arguments" in member.data or (member.kind == "property" and member.cls == SESSION)


class Sandbox:
    """A server that ends with this process, whatever becomes of it."""

    def __init__(self, program):
        self.process = subprocess.Popen(
            [program, "--memory", "--seed", "1", "--until-eof"], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        port = json.loads(self.process.stdout.readline())["port"]
        self.url = f"http://127.0.0.1:{port}"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()
        self.process.stdout.close()


def shortened(text):
    lines = text.splitlines()
    if len(lines) > SHOWN_LINES + 2:
        more = len(lines) - SHOWN_LINES
        lines[SHOWN_LINES:] = [f"… {more} more lines"]
    return "\n".join(lines)


def command_of(member, values):
    return call_line(member, values) if "arguments" in member.data else batch_line(member, values)


def run_example(programs, member, values):
    command = command_of(member, values)
    if SHOWN_URL not in command:
        return run(programs, command)
    with Sandbox(programs["sandbox"]) as sandbox:
        example = run(programs, command.replace(SHOWN_URL, sandbox.url))
    # The pages tell the reader which port to start the sandbox on.
    example.command = command
    example.output = shortened(example.output.replace(sandbox.url, SHOWN_URL))
    if command.startswith("bvconn call") and (member.seen["soap"] or member.seen["dal"]):
        example.sent = run(programs, command + " --print-request").output
    return example


def run(programs, command):
    """Runs it in a shell, as a user would, with a home of its own."""
    with tempfile.TemporaryDirectory() as home:
        environment = {"HOME": home, "XDG_CONFIG_HOME": home, "XDG_STATE_HOME": home,
                       "TZ": "UTC", "LC_ALL": "C.UTF-8",
                       "PATH": os.path.dirname(programs["tool"]) + ":" + os.environ["PATH"]}
        done = subprocess.run(["bash", "-c", command], env=environment, cwd=home, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=60, check=False)
    return Example(command, done.stdout.rstrip("\n"), done.returncode)


def run_examples(programs, values, members):
    """Gives each of the members its example, each from a sandbox of its own."""
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        running = [(member, pool.submit(run_example, programs, member, values))
                   for member in members]
        for member, each in running:
            member.example = each.result()
