"""The one error this generator reports to a person: what is wrong with which declaration, and where."""

import os


class Place:
    """A line of a file, or a folder; shown relative to the current directory when below it."""

    def __init__(self, path, line=None):
        self.path = path
        self.line = line

    def __str__(self):
        shown = os.path.relpath(self.path)
        shown = self.path if shown.startswith("..") else shown
        return shown if self.line is None else f"{shown}:{self.line}"


class GenclassError(Exception):
    """An error in the input. `declaration` reads like "class VRAX_X: property Y" and may be empty."""

    def __init__(self, place, declaration, message):
        prefix = f"{declaration}: " if declaration else ""
        super().__init__(f"{place}: {prefix}{message}")
