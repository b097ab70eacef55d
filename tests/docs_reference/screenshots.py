"""Makes the pictures of docs/reference/README.md from the pages that `./dev docs` made.

usage: screenshots.py PAGES [FOLDER]; docs/reference without one.
"""

import os
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.append(str(HERE.parent / "sandbox_page"))

from browser import Browser  # noqa: E402

PAGES = {
    "operation": "operations/BVInvoiceConnector.GetInvoice.html",
    "search": "index.html#q=reconcile",
    "error": "errors/0x80044301.html",
}


def main():
    pages = Path(sys.argv[1]).resolve()
    folder = Path(sys.argv[2]) if len(sys.argv) > 2 else HERE.parent.parent / "docs/reference"
    browser = Browser()
    try:
        browser.size(1000, 620)
        browser.scheme("light")
        for name, page in PAGES.items():
            browser.open((pages.as_uri() + "/" + page))
            browser.until("document.querySelector('h1')")
            picture = browser.picture()
            path = os.path.join(folder, f"page-{name}.png")
            Path(path).write_bytes(picture)
            print(path, len(picture))
    finally:
        browser.close()


if __name__ == "__main__":
    main()
