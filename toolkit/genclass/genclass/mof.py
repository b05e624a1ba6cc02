"""Compiles the MOF of a set of classes and of everything they refer to, with pywbem's MOF compiler.

No CIM server is involved: compiled classes stay in memory. A class is found by name in the files of a search path,
so a file needs no include directives, and files that nobody asks for are not compiled.
"""

import os
import re
from dataclasses import dataclass

import pywbem
from pywbem import MOFCompileError, MOFCompiler, MOFDependencyError, MOFParseError, MOFWBEMConnection

from . import source
from .errors import GenclassError, Place

_NAMESPACE = "root/interop"


@dataclass
class CompiledClass:
    """A class with its own declarations only, and the text they were written in."""

    cim: pywbem.CIMClass
    path: str
    text: source.ClassText

    def place(self, line=None):
        return Place(self.path, line or self.text.line)

    def error(self, message, feature=None, parameter=None):
        """An error at the class, at one of its features or at a parameter of a method."""
        found = self.feature_text(feature) if feature else None
        kind = "class" if found is None else "method" if found.is_method else "property"
        declaration, line = f"class {self.cim.classname}", self.text.line
        if found:
            declaration, line = f"{declaration}: {kind} {found.name}", found.line
            argument = found.parameter(parameter) if parameter else None
            if argument:
                declaration, line = f"{declaration}: parameter {argument.name}", argument.line
        return GenclassError(self.place(line), declaration, message)

    def feature_text(self, name):
        return next((f for f in self.text.features if f.name.lower() == name.lower()), None)


class _MemoryRepository(MOFWBEMConnection):
    """Collects what the compiler hands over. References are resolved later, when all classes are known."""

    def __init__(self, on_class, on_qualifier):
        super().__init__(conn=None)
        self._on_class = on_class
        self._on_qualifier = on_qualifier

    def CreateClass(self, *args, **kwargs):
        self._on_class(args[0] if args else kwargs["NewClass"])

    def SetQualifier(self, *args, **kwargs):
        self._on_qualifier(args[0] if args else kwargs["QualifierDeclaration"])

    def EnumerateQualifiers(self, *args, **kwargs):
        return []

    def CreateInstance(self, *args, **kwargs):
        instance = args[0] if args else kwargs["NewInstance"]
        raise ValueError(f"an instance of {instance.classname} in a schema of classes")


class _LexerProbe:
    """Stands in for the compiler's lexer to learn which copy of it is reading when an error is raised."""

    def __init__(self, lexer):
        self._lexer = lexer
        self.current = lexer

    def clone(self):
        self.current = self._lexer.clone()
        return self.current


class MofReader:
    """Compiles files once each.

    `classes` maps lower-case names to CompiledClass, `qualifiers` names to declarations; `files` were read for them.
    """

    def __init__(self, search_path):
        self.classes = {}
        self.qualifiers = {}
        self.files = []
        self._search_path = search_path
        self._texts = {}
        self._file_of = {}
        self._compiler = MOFCompiler(_MemoryRepository(self._add_class, self._add_qualifier), search_paths=[],
                                     log_func=None)
        self._probe = self._compiler.lexer = _LexerProbe(self._compiler.lexer)
        self._index()
        for name in ("qualifiers.mof", "qualifiers_optional.mof"):
            for path in self._all_files():
                if os.path.basename(path).lower() == name:
                    self._compile(path)

    def load(self, name):
        """The compiled class, or None when no file on the search path declares it."""
        key = name.lower()
        if key not in self.classes and key in self._file_of:
            self._compile(self._file_of[key])
        return self.classes.get(key)

    def class_names(self):
        """Names of all classes on the search path, in file and declaration order."""
        return [text.name for path in self._all_files() for text in self._text(path)]

    def declares_classes(self, path):
        return bool(self._text(path))

    def _all_files(self):
        for root in self._search_path:
            for folder, folders, files in os.walk(root):
                folders.sort()
                yield from (os.path.normpath(os.path.join(folder, name)) for name in sorted(files)
                            if name.endswith(".mof"))

    def _text(self, path):
        if path not in self._texts:
            with open(path, encoding="utf-8") as file:
                self._texts[path] = source.classes(file.read())
        return self._texts[path]

    def _index(self):
        for path in self._all_files():
            for text in self._text(path):
                key = text.name.lower()
                if key in self._file_of:
                    raise GenclassError(Place(path, text.line), f"class {text.name}",
                                        f"already declared in {Place(self._file_of[key], self._line_of(key))}")
                self._file_of[key] = path

    def _line_of(self, key):
        return next(text.line for text in self._text(self._file_of[key]) if text.name.lower() == key)

    def _compile(self, path):
        if path in self.files:
            return
        self.files.append(path)
        try:
            self._compiler.compile_file(path, _NAMESPACE)
        except GenclassError:
            raise
        except MOFParseError as error:
            raise self._error(path, error.msg, looked_ahead=False) from error
        except MOFDependencyError as error:  # classes are resolved later, so only qualifiers are left
            name = re.search(r"qualifier '(\w+)'", error.msg)
            raise self._error(path, f"unknown qualifier {name.group(1)}" if name else error.msg) from error
        except MOFCompileError as error:
            raise self._error(path, error.msg) from error
        except (ValueError, TypeError, pywbem.Error) as error:
            raise self._error(path, str(error)) from error

    def _error(self, path, message, looked_ahead=True):
        """An error of the compiler at the last token it had read, or at the one before where it looked ahead."""
        path = self._compiler.parser.file or path
        mof = self._compiler.parser.mof
        read = list(source.tokens(mof[:self._probe.current.lexpos]))[-2:]
        line = (read[0] if looked_ahead else read[-1]).line if read else 1
        return GenclassError(Place(path, line), source.declaration_at(mof, line), message)

    def _add_class(self, cim):
        path = os.path.normpath(self._compiler.parser.file)
        if path not in self.files:  # reached by an include directive
            self.files.append(path)
        text = next(t for t in self._text(path) if t.name.lower() == cim.classname.lower())
        self.classes[cim.classname.lower()] = CompiledClass(cim, path, text)

    def _add_qualifier(self, declaration):
        self.qualifiers[declaration.name] = declaration
