"""Rules for a class that the MOF compiler does not check but that the generated code depends on."""

_CPP_WORDS = frozenset(
    """alignas alignof and asm auto bitand bitor bool break case catch char class compl const constexpr const_cast
    continue decltype default delete do double dynamic_cast else enum explicit export extern false float for friend
    goto if inline int long mutable namespace new noexcept not nullptr operator or private protected public register
    reinterpret_cast return short signed sizeof static static_assert static_cast struct switch template this throw
    true try typedef typeid typename union unsigned using virtual void volatile wchar_t while xor
    create destroy clone meta_class static_meta_class return_value""".split())

_LITERALS = {"boolean": {"word"}, "string": {"string"}, "datetime": {"string"}, "char16": {"char", "integer"},
             "real32": {"real", "integer"}, "real64": {"real", "integer"}}
_WORDS = {"true", "false", "null"}


def check_class(model):
    """Raises the first violation as an error that names the declaration."""
    _check_unique_features(model)
    for feature in model.features:
        if model.is_local(feature):
            _check_name(model, feature)
            _check_override(model, feature)
            if feature.is_method:
                _check_parameters(model, feature.item)
            else:
                _check_property(model, feature.item)
    _check_keys(model)
    if model.superclass and model.superclass.kind != model.kind:
        raise model.compiled.error(f"is {_article(model.kind)} but its superclass {model.superclass.name} is "
                                   f"{_article(model.superclass.kind)}")


def _article(kind):
    return "a class" if kind == "class" else f"an {kind}"


def _check_unique_features(model):
    seen = {}
    for text in model.compiled.text.features:
        key = text.name.lower()
        if key in seen:
            what = f"{'method' if text.is_method else 'property'} {text.name}"
            first = model.compiled.place(seen[key].line)
            raise type(model.compiled.error(""))(model.compiled.place(text.line), f"class {model.name}: {what}",
                                                 f"already declared in {first}")
        seen[key] = text


def _check_name(model, feature):
    names = [feature.item.name] + ([p.name for p in feature.item.parameters] if feature.is_method else [])
    for name in names:
        if name in _CPP_WORDS:
            raise model.compiled.error(f"{name} cannot name a member of the generated C++ class", feature.item.name)


def _check_override(model, feature):
    overridden = model.superclass.find(feature.item.name) if model.superclass else None
    named = feature.item.qualifiers.get("override")
    if named is not None and overridden is not None and named.value.lower() != feature.item.name.lower():
        raise model.compiled.error(f"overrides {named.value} under another name", feature.item.name)
    if overridden is None:
        if named is not None:
            raise model.compiled.error(f"overrides {named.value}, which no superclass declares", feature.item.name)
        return
    before, after = _shape(overridden), _shape(feature)
    if before != after:
        raise model.compiled.error(f"declared as {after}, but overrides {overridden.origin}.{overridden.item.name}, "
                                   f"which is {before}", feature.item.name)


def _shape(feature):
    """What an override must keep, because the overridden declaration decides the layout."""
    item = feature.item
    if not feature.is_method:
        return _element_shape(item)
    return f"{_element_shape(item.result)} method({', '.join(_element_shape(p) for p in item.parameters)})"


def _element_shape(element):
    text = element.type if element.kind != "embedded" else "embedded " + element.type
    return text + (f"[{element.array_size or ''}]" if element.is_array else "")


def _check_parameters(model, method):
    text = model.compiled.feature_text(method.name)
    names = [p.name.lower() for p in text.parameters]
    for index, name in enumerate(names):
        if name in names[:index]:
            raise model.compiled.error("already declared", method.name, name)
    for parameter in method.parameters:
        _check_embedded(model, method, parameter)


def _check_embedded(model, item, parameter=None):
    element = parameter or item
    if element.kind == "embedded" and element.type != "string":
        raise model.compiled.error(f"an embedded instance in a {element.type}, but only a string holds one", item.name,
                                   parameter.name if parameter else None)


def _check_property(model, item):
    _check_embedded(model, item)
    if item.kind == "reference" and model.kind != "association":
        raise model.compiled.error("a reference, but the class is no association", item.name)
    if item.kind == "reference" and item.is_array:
        raise model.compiled.error("an array of references, which only parameters may be", item.name)
    tokens = [t for t in model.compiled.feature_text(item.name).default if t.kind != "punct"]
    allowed = _LITERALS.get(item.type, {"integer"})
    for token in tokens:
        is_word = token.kind == "word" and token.text.lower() in _WORDS
        fits = token.kind in allowed and (token.kind != "word" or is_word)
        if not fits and not (is_word and token.text.lower() == "null"):
            raise model.compiled.error(f"default {token.text} is not of type {item.type}", item.name)
    if item.default is not None and isinstance(item.default, list) != item.is_array:
        raise model.compiled.error("a list of defaults needs an array and an array needs a list", item.name)


def _check_keys(model):
    if model.superclass is None or not model.superclass.keys:
        return
    for feature in model.features:
        if model.is_local(feature) and not feature.is_method and feature.item.has("key"):
            overridden = model.superclass.find(feature.item.name)
            if overridden is None or not overridden.item.has("key"):
                raise model.compiled.error(f"adds a key, but superclass {model.superclass.name} already has the keys "
                                           f"{', '.join(model.superclass.keys)}", feature.item.name)
