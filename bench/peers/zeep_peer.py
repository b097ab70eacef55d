"""The SOAP stack of Python: zeep reads the reply into objects of typed fields, by invoices.wsdl. It
answers as the other peers do (see peer.h).

usage: zeep_peer.py URL CORE
"""

import json
import os
import resource
import sys
import time
from pathlib import Path

from zeep import Client
from zeep.exceptions import Fault

URL, CORE = sys.argv[1], int(sys.argv[2])
WORDS = "The ledger is closed until tomorrow"


class Zeep:
    def __init__(self):
        client = Client(str(Path(__file__).with_name("invoices.wsdl")))
        self._service = lambda case: client.create_service(
            "{urn:InvoiceService}Invoices", f"{URL}/{case}"
        )
        self._services = {}
        self._result = None

    def call(self, case):
        service = self._services.setdefault(case, None) or self._service(case)
        self._services[case] = service
        if case.startswith("rows"):
            self._result = service.searchForInvoices(param="U-2")
            return
        try:
            self._result = service.getInvoice(param="U-2")
        except Fault as fault:
            self._result = fault

    def check(self, case):
        self.call(case)
        if case == "fault":
            return self._result.message == WORDS
        if case == "small":
            return self._result.number == "4711"
        return len(self._result) == 200 and self._result[-1].number == "4711199"


def round_of(peer, case, count):
    def now():
        usage = resource.getrusage(resource.RUSAGE_SELF)
        return time.monotonic_ns(), time.process_time_ns(), usage.ru_minflt + usage.ru_majflt

    begin = now()
    for _ in range(count):
        peer.call(case)
    wall, cpu, faults = (after - before for before, after in zip(begin, now()))
    return {"wall": wall // count, "cpu": cpu // count, "faults": faults / count}


def main():
    if CORE >= 0:
        os.sched_setaffinity(0, {CORE})
    peer = Zeep()
    for line in sys.stdin:
        task, case, *count = line.split()
        if task == "check":
            ok = peer.check(case)
            answer = {"ok": ok, "seen": "" if ok else "something else"}
        else:
            answer = round_of(peer, case, int(count[0]))
        print(json.dumps(answer), flush=True)


main()
