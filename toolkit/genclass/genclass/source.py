"""Positions and order of the declarations in MOF text, which the compiler's class objects do not carry.

The compiler keeps properties apart from methods and forgets lines and repeated names. This module reads the same
text with a small tokenizer and returns, per class, its features in the order they are written.
"""

import re
from dataclasses import dataclass, field

_TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/)
      | (?P<string>"(?:\\.|[^"\\])*")
      | (?P<char>'(?:\\[^']*|[^'\\])')
      | (?P<real>[+-]?[0-9]*\.[0-9]+(?:[eE][+-]?[0-9]+)?)
      | (?P<integer>[+-]?(?:0[xX][0-9a-fA-F]+|[0-9]+[bB]?))
      | (?P<word>[^\W\d]\w*)
      | (?P<punct>.)""",
    re.VERBOSE | re.DOTALL,
)


@dataclass
class Token:
    kind: str
    text: str
    line: int

    def is_punct(self, text):
        return self.kind == "punct" and self.text == text

    def is_word(self, text):
        return self.kind == "word" and self.text.lower() == text


@dataclass
class FeatureText:
    """One property, reference or method as written. `default` holds the tokens of its initializer.

    `line` is where the name stands, `end` where the declaration closes.
    """

    name: str
    line: int
    end: int = 0
    is_method: bool = False
    default: list = field(default_factory=list)
    parameters: list = field(default_factory=list)  # of FeatureText

    def parameter(self, name):
        return next((p for p in self.parameters if p.name.lower() == name.lower()), None)


@dataclass
class ClassText:
    name: str
    line: int
    end: int = 0
    features: list = field(default_factory=list)


def tokens(text):
    line = 1
    for match in _TOKEN.finditer(text):
        if match.lastgroup != "skip":
            yield Token(match.lastgroup, match.group(), line)
        line += match.group().count("\n")


def _without_qualifiers(items):
    """The tokens outside qualifier lists. An index such as `[4]` or `[]` after a name is dropped with them."""
    depth = 0
    for token in items:
        if token.is_punct("["):
            depth += 1
        elif token.is_punct("]"):
            depth -= 1
        elif depth == 0:
            yield token


def _split(items, separator):
    """The parts between separators, each with the line on which it ends."""
    part = []
    for token in items:
        if token.is_punct(separator):
            yield part, token.line
            part = []
        else:
            part.append(token)
    if part:
        yield part, part[-1].line


def _last_word(items):
    return next((token for token in reversed(items) if token.kind == "word"), None)


def _feature(items):
    for index, token in enumerate(items):
        if token.is_punct("(") or token.is_punct("="):
            name = _last_word(items[:index])
            if name is None:
                return None
            if token.is_punct("="):
                return FeatureText(name.text, name.line, default=items[index + 1:])
            words = [_last_word(part) for part, _ in _split(items[index + 1:], ",")]
            parameters = [FeatureText(word.text, word.line) for word in words if word]
            return FeatureText(name.text, name.line, is_method=True, parameters=parameters)
    name = _last_word(items)
    return FeatureText(name.text, name.line) if name else None


def classes(text):
    """The classes of a MOF text, in order. Text that the compiler would refuse gives a partial answer."""
    items = list(_without_qualifiers(tokens(text)))
    found = []
    at = parentheses = 0
    while at < len(items):
        parentheses += items[at].is_punct("(") - items[at].is_punct(")")
        if parentheses or not items[at].is_word("class") or at + 1 >= len(items):  # also in Scope(class, ...)
            at += 1
            continue
        current = ClassText(items[at + 1].text, items[at + 1].line)
        at += 2
        while at < len(items) and not items[at].is_punct("{") and not items[at].is_punct(";"):
            at += 1
        body, depth = [], 0
        while at < len(items):
            depth += items[at].is_punct("{") - items[at].is_punct("}")
            if depth == 0:
                break
            body.append(items[at])
            at += 1
        for part, end in _split(body[1:], ";"):
            feature = _feature(part)
            if feature:
                feature.end = end
                current.features.append(feature)
        current.end = items[at].line if at < len(items) else items[-1].line
        found.append(current)
    return found


def declaration_at(text, line):
    """How a person would name the declaration that covers a line: "class X: property Y", or nothing."""
    for found in classes(text):
        if line <= found.end:
            feature = next((f for f in found.features if line <= f.end), None)
            if feature is None or line < found.line:
                return f"class {found.name}"
            return f"class {found.name}: {'method' if feature.is_method else 'property'} {feature.name}"
    return ""
