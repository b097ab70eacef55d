import os
import re
import signal
import socket
import threading
import unittest

from unpacked import PREFIX, SIZE, SYSTEM, UNPACKED, VERSION, content, run, sandbox, text

ACCEPT = ("cmd.exe", "/c", "Z:" + os.path.join(UNPACKED, "acceptance", "accept.cmd"))


def end_at_once(*programs):
    """Ends the programs of that name in this home of wine, as a crash ends them."""
    for number in filter(str.isdigit, os.listdir("/proc")):
        try:
            words = content("/proc", number, "cmdline")
            if (f"WINEPREFIX={PREFIX}\0".encode() in content("/proc", number, "environ")
                    and "wine64" in os.readlink(f"/proc/{number}/exe")
                    and any(re.search(rb"(^|[\\/\0])" + re.escape(each.encode()), words)
                            for each in programs)):
                os.kill(int(number), signal.SIGKILL)
        except OSError:  # it is gone, or another user's
            pass


class Ending:
    """A server that ends these programs as soon as it is asked, and does not answer."""

    def __init__(self, *programs):
        self.programs = programs

    def __enter__(self):
        self.server = socket.create_server(("127.0.0.1", 0))
        self.url = f"http://127.0.0.1:{self.server.getsockname()[1]}/soap"
        threading.Thread(target=self.answer, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.close()

    def answer(self):
        with self.server.accept()[0]:
            end_at_once(*self.programs)


class Acceptance(unittest.TestCase):
    # The acceptance script, run with these words: its status, what its report has, and of each step that
    # came to an end what it saw, by the step's name.

    def accept(self, *words):
        status, lines = run(*ACCEPT, *words)
        said = "\n".join(lines)
        path = re.search(r"^Please send back the file C:(.*)$", said, re.M).group(1).split("\\")
        folder = os.path.join(PREFIX, "drive_c", *path[1:-1])
        # It leaves nothing but that beside it.
        self.assertEqual([each for each in os.listdir(folder) if "bvconn" in each], [path[-1]])
        report = text(folder, path[-1]).replace("\r", "")
        steps = re.findall(r"^([^:\n]+): (passed|not judged|FAILED), (.*)$", report, re.M)
        return status, report, {name: (outcome, seen) for name, outcome, seen in steps}, said

    def is_registered(self):
        return run("reg.exe", "query", "HKLM\\Software\\Classes\\BVConn.BVMethods")[0] == 0

    def test_it_passes_as_far_as_wine_can_judge(self):
        with sandbox() as server:
            status, report, steps, said = self.accept(server.url + "/soap", "/session:S",
                                                      "/invoice:INV-1002")
        self.assertEqual({name: outcome for name, (outcome, _) in steps.items()}, {
            "the registry before": "passed", "registering for the user": "passed",
            "registering for the machine": "passed",
            "making an object of every class by both names": "passed",
            "a row of a catalogue": "passed", "an error of the component's own": "passed",
            "a call over http": "passed", "a call where nobody listens": "passed",
            "a call over https, certificate trusted": "not judged",
            "a call over https, certificate not trusted": "not judged",
            "the same with the file of its authority": "not judged",
            "the event of a heart beat that fails": "not judged",
            "removing all": "passed", "the registry after": "passed",
            "making an object that is not registered": "passed"})
        self.assertEqual(status, 0)
        self.assertTrue(said.startswith(report.rstrip("\n")), said)
        self.assertTrue(report.endswith("Nothing failed.\n"), report)
        # 22 classes of the interface and three helpers.
        self.assertEqual(steps["making an object of every class by both names"][1],
                         "25 classes, version " + VERSION)
        self.assertEqual(steps["a row of a catalogue"][1], "getInvoice")
        self.assertRegex(steps["a call over http"][1], r"^the server answers with \w+, which has \d+ nodes$")

    def test_it_tells_its_words_without_an_address(self):
        status, lines = run(*ACCEPT)
        self.assertEqual(status, 2)
        for word in ("ADDRESS", "/https:", "/bad:", "/ca:", "/session:", "/invoice:"):
            self.assertIn(word, "\n".join(lines))

    def test_it_fails_where_no_server_answers(self):
        status, _, steps, _ = self.accept("http://127.0.0.1:9/soap")
        self.assertEqual(status, 1)
        outcome, seen = steps["a call over http"]
        self.assertEqual(outcome, "FAILED")
        self.assertIn("0x80044301", seen)
        self.assertEqual(steps["the registry after"][0], "passed")

    def test_it_leaves_what_was_registered_before(self):
        library = "Z:" + os.path.join(UNPACKED, SIZE, "BVConn.dll")
        self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", library)[0], 0)
        try:
            status, _, steps, _ = self.accept("http://127.0.0.1:9/soap")
            self.assertEqual(status, 1)
            self.assertEqual(list(steps), ["the registry before"])
            self.assertIn("is registered already", steps["the registry before"][1])
            self.assertTrue(self.is_registered())
        finally:
            run(SYSTEM + "regsvr32.exe", "/s", "/u", library)

    def test_it_removes_all_where_a_call_ends_its_process(self):
        with Ending("cscript.exe") as server:
            status, report, steps, _ = self.accept(server.url)
        self.assertEqual(status, 1)
        # The step that it was at, and what was done about it.
        self.assertRegex(report, r"\na call over http: \nThe script came to no end\. Its status is -?\d+\.\n"
                                 r"What was left registered for the user is removed\.\n"
                                 r"What was left registered for the machine is removed\.\n$")
        self.assertEqual(steps["a row of a catalogue"], ("passed", "getInvoice"))
        self.assertFalse(self.is_registered())

    def test_it_removes_first_what_a_run_left_that_was_ended_whole(self):
        with Ending("cmd.exe", "cscript.exe") as server:
            run(*ACCEPT, server.url)
        self.assertTrue(self.is_registered())
        _, report, steps, _ = self.accept("http://127.0.0.1:9/soap")
        self.assertTrue(report.startswith("What was left registered for the user is removed.\n"
                                          "What was left registered for the machine is removed.\n"),
                        report)
        # Nothing in it is of the run before.
        self.assertEqual(report.count("the registry before: "), 1)
        self.assertEqual(steps["the registry before"][0], "passed")
        self.assertEqual(steps["the registry after"][0], "passed")
