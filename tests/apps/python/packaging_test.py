"""The package as users install it: a wheel in an environment of its own, and the folder that CMake installs.

packaging_test.py BUILD_FOLDER CMAKE
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
DATA = ROOT / "examples" / "data"

ANALYSIS = """
import korvana as kv
with kv.Application() as app:
    app.open({data!r})
    run = app.analysis()
    run.dialog.TypeOfAnalysis = kv.scSurKaplanMeierProductLimit
    run.dialog.OK()
    run.dialog.Variables = [["time"], ["status"]]
    run.dialog.CodeForCompleteResponses, run.dialog.CodeForCensoredResponses = 1, 0
    run.dialog.OK()
    table = run.dialog.Summary().table
    chart = run.dialog.SurvivalCurve()
print(kv.__file__, len(table.cells), "<svg" in chart._repr_svg_())
"""


def run(*command, **variables):
    """What a command prints; its errors when it fails."""
    environment = {name: value for name, value in os.environ.items() if not name.startswith("PYTHON")}
    done = subprocess.run([str(each) for each in command], env={**environment, **variables}, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class PackagingTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)

    def analyse(self, python, expected, **variables):
        """Analyses in a folder where no other package is found."""
        printed = run(python, "-c", f"import os; os.chdir({str(self.folder)!r})" +
                      ANALYSIS.format(data=str(DATA / "aml.csv")), **variables).split()
        self.assertTrue(printed[0].startswith(str(self.folder / expected)), printed)
        self.assertEqual(printed[1:], ["23", "True"])

    def test_a_wheel_in_an_environment_of_its_own(self):
        environment = self.folder / "environment"
        run(sys.executable, "-m", "venv", "--without-pip", environment)
        python = environment / "bin" / "python"
        pip = [sys.executable, "-m", "pip", "--python", python, "--disable-pip-version-check"]
        run(*pip, "install", "--no-index", "--config-settings", f"build-dir={BUILD}", ROOT)
        self.analyse(python, "environment/lib")
        shown = run(*pip, "show", "--files", "korvana")
        for name in ("korvana/py.typed", "korvana/_dialogs.pyi", "korvana/libOZMSurvival.so", "licenses/LICENSE"):
            self.assertIn(name, shown)
        run(*pip, "uninstall", "-y", "korvana")
        self.assertFalse(list(environment.rglob("*korvana*")))

    def test_the_folder_that_is_installed(self):
        for component in ("python", "cli"):
            run(CMAKE, "--install", BUILD, "--component", component, "--prefix", self.folder)
        place = "lib/korvana/python"
        self.analyse(sys.executable, place, PYTHONPATH=str(self.folder / place))


BUILD, CMAKE = sys.argv[1:3]
if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
