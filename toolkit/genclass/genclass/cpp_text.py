"""The C++ spelling of CIM types, flags and values, shared by all writers of C++."""

from .model import INSTANCE, char16_code

_CPP_TYPES = {"string": "String", "datetime": "Datetime"}
_LITERAL_TYPES = {"string": "const char*", "datetime": "const char*"}

# Order in which boolean qualifiers follow the kind, KEY, IN and OUT. IfDeleted's constant is spelled as the headers
# of the provider toolkit spell it.
_QUALIFIER_FLAGS = [
    ("abstract", "ABSTRACT"), ("aggregate", "AGGREGATE"), ("aggregation", "AGGREGATION"), ("counter", "COUNTER"),
    ("delete", "DELETE"), ("dn", "DN"), ("embeddedobject", "EMBEDDED_OBJECT"), ("expensive", "EXPENSIVE"),
    ("experimental", "EXPERIMENTAL"), ("gauge", "GAUGE"), ("ifdeleted", "IF_DELETED"), ("invisible", "INVISIBLE"),
    ("large", "LARGE"), ("octetstring", "OCTET_STRING"), ("read", "READ"), ("required", "REQUIRED"),
    ("static", "STATIC"), ("terminal", "TERMINAL"), ("weak", "WEAK"), ("write", "WRITE"),
]


def cpp_type(cim_type):
    return _CPP_TYPES.get(cim_type, cim_type)


def value_type(element):
    """The type of the element's value or pointer: uint32, Array_uint32, CIM_X*, Array<CIM_X*>."""
    if element.is_pointer:
        return f"Array<{element.target}*>" if element.is_array else f"{element.target}*"
    return ("Array_" if element.is_array else "") + cpp_type(element.type)


def member_type(element):
    """The type of the element's member of a class or method record; scalar pointers are not wrapped."""
    value = value_type(element)
    if element.is_pointer and not element.is_array:
        return value
    return f"Property< {value} >" if "<" in value else f"Property<{value}>"


def type_code(cim_type):
    return cim_type.upper()


def subscript(element):
    if not element.is_array:
        return "0"
    return str(element.array_size) if element.array_size and not element.is_pointer else "-1"


def flags(kind, qualifiers, is_property=False, is_parameter=False, is_result=False, is_embedded=False):
    """The flag expression of a class or feature, in the toolkit's order."""

    def is_on(name, by_default=False):
        return bool(qualifiers[name].value) if name in qualifiers else by_default

    names = [kind]
    if is_on("key"):
        names.append("KEY")
    if is_parameter and is_on("in", True):
        names.append("IN")
    if is_result or is_parameter and is_on("out"):
        names.append("OUT")
    if not is_result:
        names += [flag for name, flag in _QUALIFIER_FLAGS if is_on(name, name == "read" and is_property)]
    if is_embedded:
        names.append("EMBEDDED_INSTANCE")
    return "|".join("CIMPLE_FLAG_" + name for name in names)


def element_flags(element, is_parameter=False, is_result=False):
    has_class = element.is_pointer and element.target != INSTANCE
    return flags("REFERENCE" if element.is_pointer else "PROPERTY", element.qualifiers,
                 is_property=element.kind != "reference" and not is_parameter, is_parameter=is_parameter,
                 is_result=is_result, is_embedded=element.kind == "embedded" and has_class)


def literal_type(cim_type):
    return _LITERAL_TYPES.get(cim_type, cpp_type(cim_type))


def string_literal(text):
    out = []
    for byte in text.encode("utf-8"):
        char = chr(byte)
        if char in '"\\':
            out.append("\\" + char)
        elif 0x20 <= byte < 0x7F and char != "?":
            out.append(char)
        else:
            out.append(f"\\{byte:03o}")  # always three digits, so a digit after it stays text; '?' starts trigraphs
    return '"' + "".join(out) + '"'


def literal(cim_type, value):
    """The initializer of one default value."""
    if cim_type in ("string", "datetime"):
        return string_literal(str(value))
    if cim_type == "boolean":
        return "true" if value else "false"
    if cim_type == "char16":
        return f"char16({char16_code(value)})"
    if cim_type in ("uint64", "sint64"):
        if int(value) == -2**63:
            return "CIMPLE_SINT64_MIN"
        return f"CIMPLE_{cim_type.upper()}_LITERAL({int(value)})"
    if cim_type == "real32":
        return f"{float(value)!r}f"
    if cim_type == "real64":
        return repr(float(value))
    return str(int(value))
