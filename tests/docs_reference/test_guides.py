"""Which files are guides."""

import os
import tempfile
import unittest

import support  # noqa: F401  (so that the generator's modules are found)

import guides


class Sources(unittest.TestCase):
    def test_are_the_pages_of_the_project_and_none_that_a_build_made(self):
        with tempfile.TemporaryDirectory() as root:
            for path in ("README.md", "docs/a.md", "docs/deep/b.md", "obj-host/CMakeCache.txt",
                         "obj-host/install/README.md", "build/dev/c.md", ".ci/d.md"):
                os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write("# Title\n")
            self.assertEqual(sorted(guides.sources(root)),
                             ["README.md", "docs/a.md", "docs/deep/b.md"])


if __name__ == "__main__":
    unittest.main()
