"""Writes generated files only where their content changes, so that builds redo only what depends on a change."""

import os


def write_all(files):
    """`files` maps paths to text. All texts exist before the first write; each file is replaced in one step."""
    for path, text in files.items():
        data = text.encode("utf-8")
        try:
            with open(path, "rb") as old:
                if old.read() == data:
                    continue
        except FileNotFoundError:
            os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
        temporary = f"{path}.tmp"
        with open(temporary, "wb") as new:
            new.write(data)
        os.replace(temporary, path)
