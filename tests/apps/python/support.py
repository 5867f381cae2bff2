"""What the tests of the package share."""
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[3]
DATA = ROOT / "examples" / "data"
