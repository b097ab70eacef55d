"""try.py SOURCE BUILD WORK COMPILER BVSANDBOX [CLASS.test…]: makes the package of a build for Windows, looks
at what is in it, registers and calls its component where it was unpacked, and builds programs with it.
Ends with 77 where something is missing that this needs."""

import os
import sys
import unittest

import unpacked
from acceptance import Acceptance  # noqa: F401
from contents import Contents  # noqa: F401
from programs import Programs  # noqa: F401

if __name__ == "__main__":
    for needed in (unpacked.WINE, unpacked.BVSANDBOX):
        if not os.access(needed, os.X_OK):
            print(f"skipped: there is no {needed} here")
            sys.exit(77)
    unpacked.prepare()
    unittest.main(argv=sys.argv[:1] + sys.argv[6:])
