"""Makes the pictures of docs/sandbox-page.md: screenshots.py [FOLDER], docs without one."""

import json
import os
import sys

from browser import Browser
from served import ROOT, Sandbox

MOST_BYTES = 200_000


def make_exchanges(sandbox):
    sandbox.call("BVHeartBeatConnector.sendHeartBeat", "isBrimvale=false")
    for uid in ("INV-1001", "INV-1002", "INV-0"):
        sandbox.call("BVInvoiceConnector.GetInvoice", f"strInvoiceUID={uid}")
    sandbox.call("BVProjectConnector.getExistingProject", "aGID=PRJ-3001")
    sandbox.call("BVOrderConnector.getSAPOrderView", "aOrderGID=ORD-5001", "aIncludePrice=true")
    sandbox.ask("POST", "/admin/faults", json.dumps({"kind": "status", "count": 1}))
    sandbox.call("BVQuoteConnector.getExistingQuote", "aGID=QUO-4001")
    sandbox.call("BVGenericConnector.Send", "aService=urn:InvoiceService", "aMethod=getInvoice",
                 "aRootNodeName=UID", "aSoapNode=<a/>")


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "docs")
    # A port that looks the same each time.
    sandbox, browser = Sandbox(port=8080), Browser()
    try:
        browser.size(1100, 620)
        browser.scheme("light")
        make_exchanges(sandbox)
        last = sandbox.get("/admin/journal")["exchanges"][-1]["id"]

        def take(name, view, ready):
            browser.open(f"{sandbox.url}/#/{view}")
            browser.until(ready)
            if name == "call":
                browser.run("document.querySelector('[name=strInvoiceUID]').value = 'INV-1001';"
                            "document.querySelector('main form').requestSubmit()")
                browser.until("document.querySelector('section pre')")
                browser.run("document.activeElement.blur(); scrollTo(0, 0)")
            picture = browser.picture()
            if len(picture) > MOST_BYTES:
                sys.exit(f"the picture of {view} has {len(picture)} bytes")
            path = os.path.join(folder, f"sandbox-page-{name}.png")
            with open(path, "wb") as file:
                file.write(picture)
            print(path, len(picture))

        take("exchanges", "exchanges", f"document.querySelector('tr[data-id]')?.dataset.id === '{last}'")
        take("exchange", f"exchange/{last}", "document.querySelectorAll('pre').length === 4")
        take("call", "call/BVInvoiceConnector.GetInvoice", "document.querySelector('main form')")
    finally:
        browser.close()
        sandbox.close()


if __name__ == "__main__":
    main()
