"""Checks an answer against the structure of CIM-XML: elements, their content, attributes and the form of values.

The tables are the elements of DSP0201 that answers can hold, and what DSP0200 lets each intrinsic operation return.
"""

import re
import xml.etree.ElementTree as ElementTree

VALUES = "VALUE|VALUE.ARRAY|VALUE.REFERENCE"
PROPERTIES = "(PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE)*"
FLAVOR = "OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE"

# tag: (content as a regular expression over child tags, attributes that must be there, attributes that may)
ELEMENTS = {
    "CIM": ("MESSAGE", "CIMVERSION DTDVERSION", ""),
    "MESSAGE": ("SIMPLERSP", "ID PROTOCOLVERSION", ""),
    "SIMPLERSP": ("METHODRESPONSE|IMETHODRESPONSE", "", ""),
    "METHODRESPONSE": ("ERROR|RETURNVALUE? PARAMVALUE*", "NAME", ""),
    "IMETHODRESPONSE": ("ERROR|IRETURNVALUE? PARAMVALUE*", "NAME", ""),
    "ERROR": ("INSTANCE*", "CODE", "DESCRIPTION"),
    "RETURNVALUE": ("(VALUE|VALUE.REFERENCE)?", "", "PARAMTYPE EmbeddedObject"),
    "IRETURNVALUE": ("ANY*", "", ""),
    "PARAMVALUE": (f"({VALUES}|VALUE.REFARRAY|CLASSNAME|INSTANCENAME|CLASS|INSTANCE|VALUE.NAMEDINSTANCE)?",
                   "NAME", "PARAMTYPE EmbeddedObject"),
    "VALUE": ("", "", ""),
    "VALUE.ARRAY": ("(VALUE|VALUE.NULL)*", "", ""),
    "VALUE.NULL": ("", "", ""),
    "VALUE.REFERENCE": ("CLASSPATH|LOCALCLASSPATH|CLASSNAME|INSTANCEPATH|LOCALINSTANCEPATH|INSTANCENAME", "", ""),
    "VALUE.REFARRAY": ("(VALUE.REFERENCE|VALUE.NULL)*", "", ""),
    "VALUE.NAMEDINSTANCE": ("INSTANCENAME INSTANCE", "", ""),
    "VALUE.INSTANCEWITHPATH": ("INSTANCEPATH INSTANCE", "", ""),
    "VALUE.OBJECTWITHPATH": ("CLASSPATH CLASS|INSTANCEPATH INSTANCE", "", ""),
    "OBJECTPATH": ("INSTANCEPATH|CLASSPATH", "", ""),
    "INSTANCEPATH": ("NAMESPACEPATH INSTANCENAME", "", ""),
    "LOCALINSTANCEPATH": ("LOCALNAMESPACEPATH INSTANCENAME", "", ""),
    "CLASSPATH": ("NAMESPACEPATH CLASSNAME", "", ""),
    "LOCALCLASSPATH": ("LOCALNAMESPACEPATH CLASSNAME", "", ""),
    "NAMESPACEPATH": ("HOST LOCALNAMESPACEPATH", "", ""),
    "LOCALNAMESPACEPATH": ("NAMESPACE+", "", ""),
    "NAMESPACE": ("", "NAME", ""),
    "HOST": ("", "", ""),
    "CLASSNAME": ("", "NAME", ""),
    "INSTANCENAME": ("KEYBINDING*|KEYVALUE?|VALUE.REFERENCE?", "CLASSNAME", ""),
    "KEYBINDING": ("KEYVALUE|VALUE.REFERENCE", "NAME", ""),
    "KEYVALUE": ("", "", "VALUETYPE TYPE"),
    "INSTANCE": (f"QUALIFIER* {PROPERTIES}", "CLASSNAME", "xml:lang"),
    "PROPERTY": ("QUALIFIER* VALUE?", "NAME TYPE", "CLASSORIGIN PROPAGATED EmbeddedObject xml:lang"),
    "PROPERTY.ARRAY": ("QUALIFIER* (VALUE.ARRAY)?", "NAME TYPE",
                       "ARRAYSIZE CLASSORIGIN PROPAGATED EmbeddedObject xml:lang"),
    "PROPERTY.REFERENCE": ("QUALIFIER* (VALUE.REFERENCE)?", "NAME", "REFERENCECLASS CLASSORIGIN PROPAGATED"),
    "CLASS": (f"QUALIFIER* {PROPERTIES} METHOD*", "NAME", "SUPERCLASS"),
    "METHOD": ("QUALIFIER* (PARAMETER|PARAMETER.REFERENCE|PARAMETER.ARRAY|PARAMETER.REFARRAY)*", "NAME",
               "TYPE CLASSORIGIN PROPAGATED"),
    "PARAMETER": ("QUALIFIER*", "NAME TYPE", ""),
    "PARAMETER.REFERENCE": ("QUALIFIER*", "NAME", "REFERENCECLASS"),
    "PARAMETER.ARRAY": ("QUALIFIER*", "NAME TYPE", "ARRAYSIZE"),
    "PARAMETER.REFARRAY": ("QUALIFIER*", "NAME", "REFERENCECLASS ARRAYSIZE"),
    "QUALIFIER": ("(VALUE|VALUE.ARRAY)?", "NAME TYPE", f"PROPAGATED xml:lang {FLAVOR}"),
    "QUALIFIER.DECLARATION": ("SCOPE? (VALUE|VALUE.ARRAY)?", "NAME TYPE", f"ISARRAY ARRAYSIZE {FLAVOR}"),
    "SCOPE": ("", "", "CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION"),
}

WITH_TEXT = {"VALUE", "KEYVALUE", "HOST"}

# operation: content of its IRETURNVALUE; one that is not here has none
RETURNS = {
    "GetInstance": "INSTANCE",
    "EnumerateInstances": "(VALUE.NAMEDINSTANCE)*",
    "EnumerateInstanceNames": "INSTANCENAME*",
    "CreateInstance": "INSTANCENAME",
    "Associators": "(VALUE.OBJECTWITHPATH)*",
    "AssociatorNames": "OBJECTPATH*",
    "References": "(VALUE.OBJECTWITHPATH)*",
    "ReferenceNames": "OBJECTPATH*",
    "GetClass": "CLASS",
    "EnumerateClasses": "CLASS*",
    "EnumerateClassNames": "CLASSNAME*",
    "GetProperty": f"({VALUES})?",
    "GetQualifier": "QUALIFIER.DECLARATION",
    "EnumerateQualifiers": "(QUALIFIER.DECLARATION)*",
    "OpenEnumerateInstances": "(VALUE.INSTANCEWITHPATH)*",
    "OpenEnumerateInstancePaths": "INSTANCEPATH*",
    "OpenAssociatorInstances": "(VALUE.INSTANCEWITHPATH)*",
    "OpenAssociatorInstancePaths": "INSTANCEPATH*",
    "OpenAssociators": "(VALUE.INSTANCEWITHPATH)*",
    "OpenAssociatorPaths": "INSTANCEPATH*",
    "OpenReferences": "(VALUE.INSTANCEWITHPATH)*",
    "OpenReferencePaths": "INSTANCEPATH*",
    "OpenReferenceInstances": "(VALUE.INSTANCEWITHPATH)*",
    "OpenReferenceInstancePaths": "INSTANCEPATH*",
    "PullInstances": "INSTANCE*",
    "PullInstancesWithPath": "(VALUE.INSTANCEWITHPATH)*",
    "PullInstancePaths": "INSTANCEPATH*",
}

BOOLEAN = "true|false"
TYPES = "boolean|string|char16|[us]int(8|16|32|64)|datetime|real32|real64"
ATTRIBUTES = {
    "TYPE": TYPES, "PARAMTYPE": f"{TYPES}|reference", "VALUETYPE": "string|boolean|numeric",
    "EmbeddedObject": "instance|object", "PROPAGATED": BOOLEAN, "ISARRAY": BOOLEAN, "CODE": "[1-9][0-9]?",
    "CIMVERSION": r"2\.\d+", "DTDVERSION": r"2\.\d+", "PROTOCOLVERSION": r"1\.\d+", "ARRAYSIZE": "[1-9][0-9]*",
    "NAME": r"[^\s]+", "CLASSNAME": r"[^\s]+", **{name: BOOLEAN for name in FLAVOR.split()},
}
REAL = r"[+-]?[0-9]*\.[0-9]+([eE][+-]?[0-9]+)?|[+-]?INF|NaN"
TEXTS = {
    "boolean": "TRUE|FALSE", "char16": "(?s:.)", "string": "(?s:.*)", "real32": REAL, "real64": REAL,
    "datetime": r"[0-9*]{14}\.[0-9*]{6}([+-][0-9]{3}|:000)",
    **{f"uint{bits}": "[0-9]+" for bits in (8, 16, 32, 64)},
    **{f"sint{bits}": "-?[0-9]+" for bits in (8, 16, 32, 64)},
}


class StructureError(Exception):
    """What is wrong, after the path of tags that leads to it."""


def _compiled(content):
    """A content model, in which a blank means "then", as a pattern over child tags that each end in a blank."""
    def token(match):
        tag = match[0]
        return "" if tag == " " else "(?:[^ ]+ )" if tag == "ANY" else f"(?:{re.escape(tag)} )"
    return re.compile(re.sub("[A-Z.]+| ", token, content))


MODELS = {tag: _compiled(content) for tag, (content, _, _) in ELEMENTS.items()}
RETURN_MODELS = {operation.lower(): _compiled(content) for operation, content in RETURNS.items()}


class _Check:
    def __init__(self):
        self._path = []

    def fail(self, what):
        raise StructureError("/".join(self._path) + ": " + what)

    def model(self, element, model):
        children = "".join(child.tag + " " for child in element)
        if not model.fullmatch(children):
            self.fail(f"may not hold {children or 'nothing'}")

    def element(self, element, value_type):
        self._path.append(element.tag)
        if element.tag not in ELEMENTS:
            self.fail("is no element of an answer")
        _, needed, allowed = ELEMENTS[element.tag]
        self.model(element, MODELS[element.tag])
        self.attributes(element, needed.split(), allowed.split())
        value_type = self.type_of(element) or value_type
        if element.tag in WITH_TEXT:
            self.text(element, value_type)
        elif (element.text or "").strip() or any((child.tail or "").strip() for child in element):
            self.fail("may not hold text")
        for child in element:
            self.element(child, value_type)
        self._path.pop()

    def attributes(self, element, needed, allowed):
        names = [name.replace("{http://www.w3.org/XML/1998/namespace}", "xml:") for name in element.keys()]
        for name in needed:
            if name not in names:
                self.fail(f"lacks the attribute {name}")
        for name in names:
            if name not in needed + allowed:
                self.fail(f"may not have the attribute {name}")
            form = BOOLEAN if element.tag == "SCOPE" else ATTRIBUTES.get(name)
            if form and not re.fullmatch(form, element.get(name)):
                self.fail(f'{name}="{element.get(name)}" is not of the form {form}')

    @staticmethod
    def type_of(element):
        if element.get("EmbeddedObject"):
            return "embedded " + element.get("EmbeddedObject")
        if element.tag == "METHOD":
            return None
        return element.get("TYPE") or element.get("PARAMTYPE")

    def text(self, element, value_type):
        text = element.text or ""
        if value_type and value_type.startswith("embedded"):
            inner = parse(text)
            if inner.tag not in ("INSTANCE",) + (("CLASS",) if value_type == "embedded object" else ()):
                self.fail(f"{inner.tag} is no {value_type}")
            self.element(inner, None)
        elif value_type in TEXTS and element.tag != "HOST" and not re.fullmatch(TEXTS[value_type], text):
            self.fail(f'"{text}" is not of type {value_type}')


def parse(text):
    try:
        return ElementTree.fromstring(text)
    except ElementTree.ParseError as error:
        raise StructureError(f"not well-formed: {error}") from None


def check_answer(text):
    """Raises StructureError if `text` (str or bytes) is no CIM-XML answer."""
    root = parse(text)
    check = _Check()
    if root.tag != "CIM":
        check.fail(f"the root is {root.tag}")
    check.element(root, None)
    answer = root[0][0][0]
    if answer.tag != "IMETHODRESPONSE" or answer.find("ERROR") is not None:
        return
    returned, model = answer.find("IRETURNVALUE"), RETURN_MODELS.get(answer.get("NAME").lower())
    if (returned is None) != (model is None):
        check.fail(f"{answer.get('NAME')} must {'not ' if model is None else ''}have an IRETURNVALUE")
    if returned is not None:
        check.model(returned, model)
