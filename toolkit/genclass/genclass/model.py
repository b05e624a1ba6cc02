"""Classes with everything they inherit, checked, in the form the writers need.

A class's features stand in the order of the generated tables: inherited ones in the superclass's order, overridden
ones at their inherited place, then its own in the order they are written, methods among them.
"""

from dataclasses import dataclass, field

INSTANCE = "Instance"  # stands for any class: the target of an embedded object


@dataclass
class Element:
    """A property, reference, embedded object, parameter or method result."""

    name: str
    kind: str  # "property", "reference" or "embedded"
    type: str  # CIM type name; "reference" for references
    is_array: bool
    array_size: int  # elements of a fixed array, else None
    target: str  # class name for references and embedded instances, INSTANCE for embedded objects, else None
    default: object  # CIM value or None
    qualifiers: dict  # effective ones by lower-case name
    field_of: "Element" = None  # the element whose C++ member type an override keeps

    @property
    def is_pointer(self):
        return self.kind != "property"

    def has(self, qualifier):
        return qualifier_flag(self.qualifiers, qualifier)


@dataclass
class Method:
    name: str
    parameters: list
    result: Element
    qualifiers: dict

    def has(self, qualifier):
        return qualifier_flag(self.qualifiers, qualifier)


@dataclass
class Feature:
    """A row of a class's feature table. `owner` is the class that declares or last overrides it."""

    item: object  # Element or Method
    owner: str
    origin: str  # the class that introduced it

    @property
    def is_method(self):
        return isinstance(self.item, Method)


@dataclass
class ClassModel:
    name: str
    superclass: "ClassModel"
    kind: str  # "class", "association" or "indication"
    qualifiers: dict
    features: list = field(default_factory=list)
    compiled: object = None  # CompiledClass

    def is_local(self, feature):
        return feature.owner == self.name

    def find(self, name):
        return next((f for f in self.features if f.item.name.lower() == name.lower()), None)

    @property
    def methods(self):
        return [f for f in self.features if f.is_method]

    @property
    def keys(self):
        return [f.item.name for f in self.features if not f.is_method and f.item.has("key")]

    @property
    def targets(self):
        """Names of the classes that its own declarations name, other than its superclass."""
        return [part.target for _, part in _targets(self)]

    def is_a(self, name):
        return self.name.lower() == name.lower() or (self.superclass is not None and self.superclass.is_a(name))


def qualifier_flag(qualifiers, name):
    return name in qualifiers and qualifiers[name].value is True


def _effective(own, inherited=None):
    """A declaration's qualifiers, with those of the overridden declaration that propagate to subclasses."""
    merged = {n.lower(): q for n, q in (inherited or {}).items() if q.tosubclass is not False}
    merged.update({q.name.lower(): q for q in own.values()})
    return merged


def element(cim, inherited=None):
    """The element of a compiled property, parameter or method; of a method, its result."""
    qualifiers = _effective(cim.qualifiers, inherited)
    is_result = hasattr(cim, "return_type")
    cim_type = cim.return_type if is_result else cim.type
    target, kind = None, "property"
    if cim_type == "reference":
        kind, target = "reference", cim.reference_class
    elif "embeddedinstance" in qualifiers and qualifiers["embeddedinstance"].value is not None:
        kind, target = "embedded", qualifiers["embeddedinstance"].value
    elif qualifier_flag(qualifiers, "embeddedobject"):
        kind, target = "embedded", INSTANCE
    return Element(
        name="return_value" if is_result else cim.name, kind=kind, type=cim_type,
        is_array=bool(getattr(cim, "is_array", False)), array_size=getattr(cim, "array_size", None), target=target,
        default=getattr(cim, "value", None), qualifiers=qualifiers)


def build_models(reader, names, checks, missing):
    """Models of the named classes and of all they refer to, superclasses and referenced classes first.

    `checks` is called with each new model; `missing(name)` makes the error for a named class that no file declares.
    """
    builder = _Builder(reader, checks)
    roots = [builder.resolve(name, lambda _, n=name: missing(n)) for name in names]
    builder.resolve_targets()
    return builder.in_order(roots)


class _Builder:
    def __init__(self, reader, checks):
        self._reader = reader
        self._checks = checks
        self._models = {}
        self._pending = []  # models whose targets are not resolved yet

    def resolve(self, name, error):
        """The model of a class, with its superclasses. `error(text)` is raised when the class is unknown."""
        key = name.lower()
        if key in self._models:
            return self._models[key]
        compiled = self._reader.load(name)
        if compiled is None:
            raise error(f"unknown class {name}")
        self._models[key] = None  # met again while its superclasses are resolved: a circle
        superclass = None
        if compiled.cim.superclass:
            unknown = f"unknown superclass {compiled.cim.superclass}"
            superclass = self.resolve(compiled.cim.superclass, lambda _: compiled.error(unknown))
            if superclass is None:
                raise compiled.error(f"is its own superclass through {compiled.cim.superclass}")
        model = self._models[key] = _resolve(compiled, superclass)
        self._checks(model)
        self._pending.append(model)
        return model

    def resolve_targets(self):
        resolved = []
        while self._pending:
            model = self._pending.pop()
            resolved.append(model)
            for item, part in _targets(model):
                parameter = None if part is item else part.name
                target = self.resolve(part.target, lambda text: model.compiled.error(text, item.name, parameter))
                part.target = target.name  # the class's own spelling names its header
        for model in resolved:
            for item, part in _targets(model):
                self._check_narrowing(model, item, part)

    def in_order(self, roots):
        """All models, each after its superclass and, where they do not refer to each other, after its targets."""
        ordered, unfinished = {}, set()

        def is_below_unfinished(model):
            return model is not None and (model.name in unfinished or is_below_unfinished(model.superclass))

        def visit(model):
            if model.name in ordered or is_below_unfinished(model):
                return
            unfinished.add(model.name)
            if model.superclass:
                visit(model.superclass)
            for _, part in _targets(model):
                visit(self._models[part.target.lower()])
            unfinished.remove(model.name)
            ordered[model.name] = model

        for model in [*roots, *self._models.values()]:  # the latter for those that had to wait
            visit(model)
        return list(ordered.values())

    def _check_narrowing(self, model, item, part):
        overridden = model.superclass.find(item.name) if model.superclass else None
        if overridden and part is item and part.kind == "reference" and not overridden.is_method:
            target = self._models[part.target.lower()]
            if not target.is_a(overridden.item.target):
                raise model.compiled.error(f"overrides a reference to {overridden.item.target}, of which "
                                           f"{target.name} is no subclass", item.name)


def _targets(model):
    """The own declarations that name a class, each with the property or method it belongs to."""
    for feature in model.features:
        if model.is_local(feature):
            parts = [*feature.item.parameters, feature.item.result] if feature.is_method else [feature.item]
            for part in parts:
                if part.target and part.target != INSTANCE:
                    yield feature.item, part


def _resolve(compiled, superclass):
    cim = compiled.cim
    qualifiers = _effective(cim.qualifiers, superclass.qualifiers if superclass else None)
    kind = next((k for k in ("association", "indication") if qualifier_flag(qualifiers, k)), "class")
    features = list(superclass.features) if superclass else []
    positions = {f.item.name.lower(): i for i, f in enumerate(features)}
    for text in compiled.text.features:
        at = positions.get(text.name.lower())
        overridden = features[at] if at is not None else None
        item = _item(cim.methods[text.name] if text.is_method else cim.properties[text.name], overridden)
        feature = Feature(item, cim.classname, overridden.origin if overridden else cim.classname)
        if overridden:
            features[at] = feature
        else:
            positions[text.name.lower()] = len(features)
            features.append(feature)
    return ClassModel(cim.classname, superclass, kind, qualifiers, features, compiled)


def _item(cim, overridden):
    inherited = overridden.item if overridden and overridden.is_method == hasattr(cim, "return_type") else None
    if not hasattr(cim, "return_type"):
        item = element(cim, inherited.qualifiers if inherited else None)
        item.field_of = (inherited.field_of or inherited) if inherited and item.kind != "reference" else None
        return item
    parameters = []
    for index, parameter in enumerate(cim.parameters.values()):
        same = inherited.parameters[index] if inherited and index < len(inherited.parameters) else None
        parameters.append(element(parameter, same.qualifiers if same else None))
    result = element(cim, inherited.qualifiers if inherited else None)
    return Method(cim.name, parameters, result, result.qualifiers)


_ESCAPES = {"b": 8, "t": 9, "n": 10, "f": 12, "r": 13, "'": 39, '"': 34, "\\": 92, "v": 11}


def char16_code(value):
    """The code of a char16 value, which the MOF compiler leaves as it is written: 'A', '\\n', '\\x41' or 65."""
    text = str(value)
    if len(text) == 1 and not text.isdigit():
        return ord(text)
    if not text.startswith("'"):
        return int(text)
    inner = text[1:-1]
    if not inner.startswith("\\"):
        return ord(inner)
    return int(inner[2:], 16) if inner[1] in "xX" else _ESCAPES[inner[1]]
