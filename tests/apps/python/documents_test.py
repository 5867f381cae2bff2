"""The page about Python shows what comes, and every script in examples runs."""
import doctest
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
EXAMPLES = sorted((ROOT / "examples").glob("*.py"))


class Documents(unittest.TestCase):
    def test_the_page_shows_what_comes(self):
        os.chdir(ROOT)
        text = (ROOT / "docs" / "python.md").read_text(encoding="utf-8")
        session = re.sub(r"^```.*$", "", text, flags=re.M)  # what is expected ends at an empty line
        page = doctest.DocTestParser().get_doctest(session, {}, "docs/python.md", "docs/python.md", 0)
        failed, tried = doctest.DocTestRunner(verbose=False).run(page)
        self.assertEqual(failed, 0)
        self.assertGreater(tried, 20)

    def test_every_example_runs_from_any_folder(self):
        self.assertGreaterEqual(len(EXAMPLES), 7)
        with tempfile.TemporaryDirectory() as folder:
            for example in EXAMPLES:
                with self.subTest(example.name):
                    outcome = subprocess.run([sys.executable, example], cwd=folder, capture_output=True, text=True)
                    self.assertEqual((outcome.returncode, outcome.stderr), (0, ""))
                    self.assertIn("---", outcome.stdout)  # a table was printed
            self.assertEqual(os.listdir(folder), [])


if __name__ == "__main__":
    unittest.main()
