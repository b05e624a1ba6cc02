"""What the generator says about faulty input: where, which declaration and what is wrong; it then writes nothing."""

import pytest

BASE = """\
class Test_Base
{
    [Key] string Id;
    uint16 Level;
    uint32 Reset([In] uint16 How);
};
"""

CASES = {
    "unknown superclass": (
        "/* two\nlines */\nclass Test_X : Test_Missing\n{\n};\n",
        "mof/test.mof:3: class Test_X: unknown superclass Test_Missing"),
    "unknown superclass of a superclass": (
        "class Test_X : Test_Y\n{\n};\nclass Test_Y : Test_Missing\n{\n};\n",
        "mof/test.mof:4: class Test_Y: unknown superclass Test_Missing"),
    "circle of superclasses": (
        "class Test_X : Test_Y\n{\n};\nclass Test_Y : Test_X\n{\n};\n",
        "mof/test.mof:4: class Test_Y: is its own superclass through Test_X"),
    "unknown class of a reference": (
        BASE + "[Association]\nclass Test_X\n{\n    [Key] Test_Base REF A;\n    [Key] Test_Missing REF B;\n};\n",
        "mof/test.mof:11: class Test_X: property B: unknown class Test_Missing"),
    "unknown class of a parameter": (
        "class Test_X\n{\n    uint32 Do(\n        [In] uint16 A,\n        [In] Test_Missing REF B[]);\n};\n",
        "mof/test.mof:5: class Test_X: method Do: parameter B: unknown class Test_Missing"),
    "unknown embedded class": (
        'class Test_X\n{\n    [EmbeddedInstance("Test_Missing")]\n    string Part;\n};\n',
        "mof/test.mof:4: class Test_X: property Part: unknown class Test_Missing"),
    "duplicate property": (
        "class Test_X\n{\n    uint16 A;\n    uint16 B;\n    string a;\n};\n",
        "mof/test.mof:5: class Test_X: property a: already declared in mof/test.mof:3"),
    "method named like a property": (
        "class Test_X\n{\n    uint16 A;\n    uint32 A();\n};\n",
        "mof/test.mof:4: class Test_X: method A: already declared in mof/test.mof:3"),
    "duplicate parameter": (
        "class Test_X\n{\n    uint32 Do([In] uint16 A,\n        [In] string A);\n};\n",
        "class Test_X: method Do: parameter A: already declared"),
    "class declared twice": (
        BASE + "class Test_X\n{\n};\nclass TEST_BASE\n{\n};\n",
        "mof/test.mof:10: class TEST_BASE: already declared in mof/test.mof:1"),
    "key below a keyed class": (
        BASE + "class Test_X : Test_Base\n{\n    [Key] uint32 More;\n};\n",
        "mof/test.mof:9: class Test_X: property More: adds a key, but superclass Test_Base already has the keys Id"),
    "text as default of a number": (
        'class Test_X\n{\n    uint32 A = 1;\n    uint32 B = "1";\n};\n',
        'mof/test.mof:4: class Test_X: property B: default "1" is not of type uint32'),
    "text as default of a boolean": (
        'class Test_X\n{\n    boolean A = "true";\n};\n',
        'mof/test.mof:3: class Test_X: property A: default "true" is not of type boolean'),
    "fraction as default of an integer": (
        "class Test_X\n{\n    uint32 A = 1.5;\n};\n",
        "mof/test.mof:3: class Test_X: property A: default 1.5 is not of type uint32"),
    "default out of range": (
        "class Test_X\n{\n    uint8 A;\n\n    [Write]\n    uint8 B = 256;\n};\n",
        "mof/test.mof:6: class Test_X: property B: "),
    "character default that XML cannot hold": (
        "class Test_X\n{\n    char16 A = '\\x0001';\n};\n",
        "mof/test.mof:3: class Test_X: property A: XML has no way to write the default U+0001"),
    "datetime default that is none": (
        'class Test_X\n{\n    datetime When = "noon";\n};\n',
        "mof/test.mof:3: class Test_X: property When: "),
    "unknown qualifier": (
        "class Test_X\n{\n    uint8 A;\n    [Sometimes] uint8 B;\n};\n",
        "mof/test.mof:4: class Test_X: property B: unknown qualifier Sometimes"),
    "class that no file declares": (
        BASE, "mof: class Test_X: no MOF file declares this class"),
    "syntax error": (
        "class Test_X\n{\n    uint8 A;\n    uint8 uint8 B;\n};\n",
        "mof/test.mof:4: class Test_X: property B: MOF grammar error"),
    "text that never ends": (
        "class Test_X\n{\n    uint8 A;\n",
        "mof/test.mof:3: class Test_X"),
    "override with another type": (
        BASE + 'class Test_X : Test_Base\n{\n    [Override("Level")] uint32 Level;\n};\n',
        "mof/test.mof:9: class Test_X: property Level: declared as uint32, but overrides Test_Base.Level, "
        "which is uint16"),
    "override with other parameters": (
        BASE + 'class Test_X : Test_Base\n{\n    [Override("Reset")] uint32 Reset();\n};\n',
        "mof/test.mof:9: class Test_X: method Reset: declared as uint32 method(), but overrides Test_Base.Reset, "
        "which is uint32 method(uint16)"),
    "override of nothing": (
        BASE + 'class Test_X : Test_Base\n{\n    [Override("Levle")] uint16 Levle;\n};\n',
        "mof/test.mof:9: class Test_X: property Levle: overrides Levle, which no superclass declares"),
    "reference narrowed to a stranger": (
        BASE + "[Association]\nclass Test_L\n{\n    [Key] Test_Base REF A;\n    [Key] Test_Base REF B;\n};\n"
        '[Association]\nclass Test_X : Test_L\n{\n    [Override("A")] CIM_Zone REF A;\n};\n',
        "mof/test.mof:16: class Test_X: property A: overrides a reference to Test_Base, of which CIM_Zone is no "
        "subclass"),
    "reference outside an association": (
        BASE + "class Test_X\n{\n    Test_Base REF A;\n};\n",
        "mof/test.mof:9: class Test_X: property A: a reference, but the class is no association"),
    "association below a plain class": (
        BASE + "[Association]\nclass Test_X : Test_Base\n{\n};\n",
        "mof/test.mof:8: class Test_X: is an association but its superclass Test_Base is a class"),
    "embedded instance in a number": (
        'class Test_X\n{\n    uint32 Do(\n        [EmbeddedInstance("Test_X")] uint8 A);\n};\n',
        "mof/test.mof:4: class Test_X: method Do: parameter A: an embedded instance in a uint8, but only a string "
        "holds one"),
    "override under another name": (
        BASE + 'class Test_X : Test_Base\n{\n    [Override("Id")] uint16 Level;\n};\n',
        "mof/test.mof:9: class Test_X: property Level: overrides Id under another name"),
    "name that C++ takes": (
        "class Test_X\n{\n    uint8 register;\n};\n",
        "mof/test.mof:3: class Test_X: property register: register cannot name a member of the generated C++ class"),
}


@pytest.mark.parametrize("mof, message", CASES.values(), ids=CASES.keys())
def test_faulty_mof_is_refused_with_its_place(scratch, mof, message):
    scratch.write(mof)
    result = scratch.run("--class", "Test_X")
    assert result.stderr.startswith(message) or f": {message}" in result.stderr, result.stderr
    assert "Traceback" not in result.stderr
    assert result.returncode == 1
    assert not scratch.generated()


PROVIDER_CASES = {
    "class that no file declares": (
        "// list\nVRAX_PROVIDER(INSTANCE, x, Test_Missing)\n",
        "providers.def:2: provider Test_Missing: no MOF file declares this class"),
    "kind of another class": (
        "VRAX_PROVIDER(ASSOCIATION, x, Test_Base)\n",
        "providers.def:1: provider Test_Base: registered as ASSOCIATION, but the class is a plain class"),
    "unknown kind": (
        "VRAX_PROVIDER(METHOD, x, Test_Base)\n",
        "providers.def:1: provider Test_Base: unknown kind METHOD, expected INSTANCE, ASSOCIATION, INDICATION"),
    "listed twice": (
        "VRAX_PROVIDER(INSTANCE, x, Test_Base)\n/* a\n*/ VRAX_PROVIDER(INSTANCE, x, Test_base)\n",
        "providers.def:3: provider Test_base: listed twice"),
    "other spelling": (
        "VRAX_PROVIDER(INSTANCE, x, TEST_Base)\n",
        "providers.def:1: provider TEST_Base: the class is spelled Test_Base"),
    "missing argument": (
        "VRAX_PROVIDER(INSTANCE, Test_Base)\n",
        "providers.def:1: expected VRAX_PROVIDER(<kind>, <folder>, <class>)"),
}


@pytest.mark.parametrize("providers, message", PROVIDER_CASES.values(), ids=PROVIDER_CASES.keys())
def test_faulty_list_of_providers_is_refused_with_its_place(scratch, providers, message):
    scratch.write(BASE)
    scratch.providers(providers)
    result = scratch.run()
    assert result.stderr.strip() == message
    assert result.returncode == 1
    assert not scratch.generated()


def test_an_error_leaves_earlier_output_as_it_was(scratch):
    scratch.write(BASE)
    assert scratch.run("--class", "Test_Base").returncode == 0
    before = {name: path.read_bytes() for name, path in scratch.generated().items()}
    scratch.write(BASE.replace("uint16 Level", "uint61 Level"))
    assert scratch.run("--class", "Test_Base").returncode == 1
    assert {name: path.read_bytes() for name, path in scratch.generated().items()} == before
