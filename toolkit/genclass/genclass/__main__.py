"""Command line: python3 -m genclass --help."""

import argparse
import hashlib
import os
import sys

from . import checks, cpp_class, cpp_methods, model, mof, ordered_mof, output, registration, repository_xml
from .errors import GenclassError, Place


def _arguments():
    parser = argparse.ArgumentParser(prog="genclass", description=__doc__)
    parser.add_argument("--schema", action="append", required=True, metavar="DIR",
                        help="folder of MOF files, searched with its subfolders; may be repeated")
    parser.add_argument("--providers", metavar="FILE", help="list of VRAX_PROVIDER(kind, folder, class) lines")
    parser.add_argument("--class", action="append", default=[], dest="classes", metavar="NAME",
                        help="a further class to describe, with <Class>_Methods.h; may be repeated")
    parser.add_argument("--also", action="append", default=[], metavar="NAME",
                        help="a further class to describe that no provider is registered for; may be repeated")
    parser.add_argument("--output", metavar="DIR", help="folder of the generated C++")
    parser.add_argument("--repository", metavar="FILE", help="the agent's class repository (XML)")
    parser.add_argument("--registration", metavar="FILE", help="the agent's registration file")
    parser.add_argument("--mof", metavar="DIR",
                        help="folder for the MOF in an order that any CIM server reads: "
                             f"{ordered_mof.SUPERCLASSES} and {ordered_mof.VENDOR}")
    parser.add_argument("--location", default="vraxproviders", help="library name in the registration file")
    parser.add_argument("--namespace", default="root/interop", help="namespace in the registration file")
    parser.add_argument("--name", default="vrax_classes", help="tells this set of classes from others in a program")
    parser.add_argument("--list", action="store_true",
                        help="write nothing; print 'in <file>' per MOF file read and 'out <file>' per generated file")
    return parser.parse_args()


def _generate(arguments):
    """(generated texts by path, MOF files read)"""
    entries = registration.read(arguments.providers) if arguments.providers else []
    reader = mof.MofReader(arguments.schema)
    places = {entry.name: entry for entry in entries}

    def missing(name):
        if name in places:
            return places[name].error("no MOF file declares this class")
        return GenclassError(Place(arguments.schema[0]), f"class {name}", "no MOF file declares this class")

    registered = [*places, *arguments.classes]
    models = model.build_models(reader, [*registered, *arguments.also], checks.check_class, missing)
    registration.check_kinds(entries, models)

    files = {}
    if arguments.output:
        symbol = "__meta_repository_" + hashlib.md5(arguments.name.encode()).hexdigest().upper()
        folder = arguments.output
        for item in models:
            files[os.path.join(folder, f"{item.name}.h")] = cpp_class.header(item)
            files[os.path.join(folder, f"{item.name}.cpp")] = cpp_class.source(item, symbol)
            if item.name in registered:
                files[os.path.join(folder, f"{item.name}_Methods.h")] = cpp_methods.methods_header(item)
        files[os.path.join(folder, "Method_Dispatch.h")] = cpp_methods.DISPATCH_HEADER
        files[os.path.join(folder, "repository.h")] = cpp_class.repository_header(models)
        files[os.path.join(folder, "repository.cpp")] = cpp_class.repository_source(models, symbol)
        if entries:
            files[os.path.join(folder, "providers_includes.h")] = registration.provider_includes(entries)
    if arguments.repository:
        files[arguments.repository] = repository_xml.repository(models, reader.qualifiers)
    if arguments.mof:
        for name, text in ordered_mof.files(models, reader).items():
            files[os.path.join(arguments.mof, name)] = text
    if arguments.registration:
        files[arguments.registration] = registration.registration_file(entries, arguments.location,
                                                                       arguments.namespace)
    return files, reader.files


def main():
    arguments = _arguments()
    try:
        files, read = _generate(arguments)
        if arguments.list:
            print("\n".join([f"in {path}" for path in read] + [f"out {path}" for path in files]))
        else:
            output.write_all(files)
    except (GenclassError, OSError) as error:
        print(f"genclass: {error}" if isinstance(error, OSError) else error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
