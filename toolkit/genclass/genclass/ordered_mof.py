"""The MOF of a set of classes in files that any CIM server's compiler reads from top to bottom.

Such compilers want a class to be there before it is named: as superclass, by a reference, or by EmbeddedInstance.
"""

import os

from .errors import GenclassError, Place

SUPERCLASSES = "CIM_Schema.mof"  # the qualifier types and the classes of the CIM Schema
VENDOR = "vendor.mof"  # the others
_SCHEMA_PREFIX = "CIM_"


def _text(path):
    with open(path, encoding="utf-8") as file:
        return file.read().rstrip("\n")


def _check_order(models):
    """A circle of references has no order."""
    there = set()
    for model in models:
        there.add(model.name)
        needed = [model.superclass.name] if model.superclass else []
        for name in needed + model.targets:
            if name not in there:
                raise model.compiled.error(f"names {name}, which cannot stand before it in one MOF file")
            if name.startswith(_SCHEMA_PREFIX) < model.name.startswith(_SCHEMA_PREFIX):
                raise model.compiled.error(f"a class of the CIM Schema names {name}")


def files(models, reader):
    """Texts by file name. `models` stand in the order of model.build_models."""
    _check_order(models)
    path_of = {model.name: model.compiled.path for model in models}
    shared = [path for path in path_of.values() if list(path_of.values()).count(path) > 1]
    if shared:
        raise GenclassError(Place(shared[0], 1), "", "more than one class in a file: which goes where is unknown")
    qualifiers = [_text(path) for path in reader.files if not reader.declares_classes(path)]
    superclasses = [_text(path) for name, path in path_of.items() if name.startswith(_SCHEMA_PREFIX)]
    vendor = [_text(path) for name, path in path_of.items() if not name.startswith(_SCHEMA_PREFIX)]
    return {SUPERCLASSES: "\n\n".join(qualifiers + superclasses) + "\n", VENDOR: "\n\n".join(vendor) + "\n"}
