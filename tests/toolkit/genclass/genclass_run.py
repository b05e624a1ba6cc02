"""Runs the generator on MOF text in a scratch folder, for the tests of this folder."""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
SCHEMA = ROOT / "schema"


class Scratch:
    """A schema of one file, `test.mof`, beside the project's own, and a folder for what is generated from it."""

    def __init__(self, folder):
        self.folder = folder
        (folder / "mof").mkdir()

    def write(self, mof, name="test.mof"):
        (self.folder / "mof" / name).write_text(mof, encoding="utf-8")

    def providers(self, text):
        (self.folder / "providers.def").write_text(text, encoding="utf-8")

    def run(self, *options):
        """The finished process; its messages name files relative to the scratch folder."""
        command = [sys.executable, "-m", "genclass", "--schema", "mof", "--schema", str(SCHEMA), "--output", "out",
                   "--repository", "repository.xml", "--registration", "providers.reg"]
        if (self.folder / "providers.def").exists():
            command += ["--providers", "providers.def"]
        environment = {**os.environ, "PYTHONPATH": str(ROOT / "toolkit" / "genclass")}
        return subprocess.run([*command, *options], cwd=self.folder, env=environment, capture_output=True, text=True,
                              check=False)

    def generated(self):
        return {path.name: path for path in sorted(self.folder.glob("out/*"))}
