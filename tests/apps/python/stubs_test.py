"""The type stubs beside the package: what editors and type checkers know of it."""
import ast
import pathlib
import unittest

import korvana as kv
from korvana._analysis import dialogs

FOLDER = pathlib.Path(kv.__file__).parent


def stub(name):
    return ast.parse((FOLDER / name).read_text(encoding="utf-8"))


class StubsTest(unittest.TestCase):
    def test_whatever_the_package_has_is_declared(self):
        declared = set()
        for node in stub("__init__.pyi").body:
            if isinstance(node, ast.ImportFrom):
                declared |= {each.asname for each in node.names}
            elif isinstance(node, ast.AnnAssign):
                declared.add(node.target.id)
            elif isinstance(node, ast.FunctionDef):
                declared.add(node.name)
                self.assertIn("time", [each.arg for each in node.args.kwonlyargs], node.name)
        self.assertEqual(declared - {"__version__"}, set(kv.__all__))
        self.assertTrue((FOLDER / "py.typed").exists())

    def test_dialogs_have_their_members_and_help(self):
        classes = {node.name: {each.name: each for each in node.body if isinstance(each, ast.FunctionDef)}
                   for node in stub("_dialogs.pyi").body if isinstance(node, ast.ClassDef)}
        self.assertEqual(set(dialogs) - set(classes), set())
        estimation = classes["SurKaplanMeier"]
        self.assertEqual(ast.unparse(estimation["CodeForCompleteResponses"].args), "self, value: float | str")
        results = classes["SurKaplanMeierResults"]
        self.assertEqual(ast.get_docstring(results["PercentilesOfSurvivalFunction"]),
                         dialogs["SurKaplanMeierResults"].PercentilesOfSurvivalFunction.__doc__)
        self.assertEqual(ast.unparse(results["DefaultPlot"].args), "self", "it cannot be set")


if __name__ == "__main__":
    unittest.main()
