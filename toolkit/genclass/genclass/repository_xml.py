"""Writes the agent's class repository: one file of DSP0201 declarations.

Form, in this order:

  <CIM CIMVERSION="2.0" DTDVERSION="2.0"><DECLARATION><DECLGROUP>
    <QUALIFIER.DECLARATION .../>      one per qualifier type, with SCOPE, flavors and default
    <VALUE.OBJECT><CLASS NAME SUPERCLASS>
      QUALIFIER*, (PROPERTY | PROPERTY.ARRAY | PROPERTY.REFERENCE)*, METHOD*
    </CLASS></VALUE.OBJECT>           superclasses and referenced classes before the classes that need them
  </DECLGROUP></DECLARATION></CIM>

A class holds its own declarations only: what it inherits stands in its superclass, so the class origin of an element
is the first class of the chain that declares it (an overriding declaration repeats the name and carries an Override
qualifier). PROPAGATED and CLASSORIGIN are therefore left out. Qualifiers are those written in the MOF; the reader
propagates them by their TOSUBCLASS flavor, which is "true" where the attribute is absent (as OVERRIDABLE is).
Properties of an association that refer to classes carry REFERENCECLASS. A property or parameter that holds an
embedded instance or object is a string with the EmbeddedInstance or EmbeddedObject qualifier.
"""

from xml.dom import minidom

from .model import char16_code


def repository(models, qualifiers):
    out = ['<?xml version="1.0" encoding="utf-8"?>\n',
           '<CIM CIMVERSION="2.0" DTDVERSION="2.0">\n<DECLARATION>\n<DECLGROUP>\n']
    out += [_text(declaration.tocimxml()) for declaration in qualifiers.values()]
    for model in models:
        element = _with_characters(model.compiled).tocimxml()
        _strip(element)
        out.append(f"<VALUE.OBJECT>\n{_text(element)}</VALUE.OBJECT>\n")
    out.append("</DECLGROUP>\n</DECLARATION>\n</CIM>\n")
    return "".join(out)


def _with_characters(compiled):
    """The class with its char16 defaults as the characters themselves instead of their literals."""

    def character(value, feature):
        code = char16_code(value)
        if not (code in (9, 10) or 0x20 <= code < 0xD800 or 0xE000 <= code < 0xFFFE):
            raise compiled.error(f"XML has no way to write the default U+{code:04X}", feature)
        return chr(code)

    cim = compiled.cim.copy()
    for prop in cim.properties.values():
        if prop.type == "char16" and prop.value is not None:
            prop.value = ([character(v, prop.name) for v in prop.value] if prop.is_array
                          else character(prop.value, prop.name))
    return cim


def _strip(element):
    for child in element.childNodes:
        if child.nodeType == minidom.Node.ELEMENT_NODE:
            for attribute in ("PROPAGATED", "CLASSORIGIN"):
                if child.hasAttribute(attribute):
                    child.removeAttribute(attribute)
            _strip(child)


def _text(element):
    """One line an element; MOF texts may hold any character, so whitespace is not added inside values."""
    return element.toxml() + "\n"
