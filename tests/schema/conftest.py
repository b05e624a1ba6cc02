"""Makes the class generator's modules importable."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "toolkit" / "genclass"))
