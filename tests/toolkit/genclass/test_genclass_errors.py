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

CASES = [
    ("/* two\nlines */\nclass Test_X : Test_Missing\n{\n};\n",
     "mof/test.mof:3: class Test_X: unknown superclass Test_Missing"),
    ("class Test_X : Test_Y\n{\n};\nclass Test_Y : Test_Missing\n{\n};\n",
     "mof/test.mof:4: class Test_Y: unknown superclass Test_Missing"),
    ("class Test_X : Test_Y\n{\n};\nclass Test_Y : Test_X\n{\n};\n",
     "mof/test.mof:4: class Test_Y: is its own superclass through Test_X"),
    (BASE + "[Association]\nclass Test_X\n{\n    [Key] Test_Base REF A;\n    [Key] Test_Missing REF B;\n};\n",
     "mof/test.mof:11: class Test_X: property B: unknown class Test_Missing"),
    ("class Test_X\n{\n    uint32 Do(\n        [In] uint16 A,\n        [In] Test_Missing REF B[]);\n};\n",
     "mof/test.mof:5: class Test_X: method Do: parameter B: unknown class Test_Missing"),
    ('class Test_X\n{\n    [EmbeddedInstance("Test_Missing")]\n    string Part;\n};\n',
     "mof/test.mof:4: class Test_X: property Part: unknown class Test_Missing"),
    ("class Test_X\n{\n    uint16 A;\n    uint16 B;\n    string a;\n};\n",
     "mof/test.mof:5: class Test_X: property a: already declared in mof/test.mof:3"),
    ("class Test_X\n{\n    uint16 A;\n    uint32 A();\n};\n",
     "mof/test.mof:4: class Test_X: method A: already declared in mof/test.mof:3"),
    ("class Test_X\n{\n    uint32 Do([In] uint16 A,\n        [In] string A);\n};\n",
     "class Test_X: method Do: parameter A: already declared"),
    (BASE + "class Test_X\n{\n};\nclass TEST_BASE\n{\n};\n",
     "mof/test.mof:10: class TEST_BASE: already declared in mof/test.mof:1"),
    (BASE + "class Test_X : Test_Base\n{\n    [Key] uint32 More;\n};\n",
     "mof/test.mof:9: class Test_X: property More: adds a key, but superclass Test_Base already has the keys Id"),
    ('class Test_X\n{\n    uint32 A = 1;\n    uint32 B = "1";\n};\n',
     'mof/test.mof:4: class Test_X: property B: default "1" is not of type uint32'),
    ('class Test_X\n{\n    boolean A = "true";\n};\n',
     'mof/test.mof:3: class Test_X: property A: default "true" is not of type boolean'),
    ("class Test_X\n{\n    uint32 A = 1.5;\n};\n",
     "mof/test.mof:3: class Test_X: property A: default 1.5 is not of type uint32"),
    ("class Test_X\n{\n    uint8 A;\n\n    [Write]\n    uint8 B = 256;\n};\n",
     "mof/test.mof:6: class Test_X: property B: "),
    ("class Test_X\n{\n    char16 A = '\\x0001';\n};\n",
     "mof/test.mof:3: class Test_X: property A: XML has no way to write the default U+0001"),
    ('class Test_X\n{\n    datetime When = "noon";\n};\n',
     "mof/test.mof:3: class Test_X: property When: "),
    ("class Test_X\n{\n    uint8 A;\n    [Sometimes] uint8 B;\n};\n",
     "mof/test.mof:4: class Test_X: property B: unknown qualifier Sometimes"),
    (BASE, "mof: class Test_X: no MOF file declares this class"),
    ("class Test_X\n{\n    uint8 A;\n    uint8 uint8 B;\n};\n",
     "mof/test.mof:4: class Test_X: property B: MOF grammar error"),
    ("class Test_X\n{\n    uint8 A;\n",
     "mof/test.mof:3: class Test_X"),
    (BASE + 'class Test_X : Test_Base\n{\n    [Override("Level")] uint32 Level;\n};\n',
     "mof/test.mof:9: class Test_X: property Level: declared as uint32, but overrides Test_Base.Level, "
     "which is uint16"),
    (BASE + 'class Test_X : Test_Base\n{\n    [Override("Reset")] uint32 Reset();\n};\n',
     "mof/test.mof:9: class Test_X: method Reset: declared as uint32 method(), but overrides Test_Base.Reset, "
     "which is uint32 method(uint16)"),
    (BASE + 'class Test_X : Test_Base\n{\n    [Override("Levle")] uint16 Levle;\n};\n',
     "mof/test.mof:9: class Test_X: property Levle: overrides Levle, which no superclass declares"),
    (BASE + "[Association]\nclass Test_L\n{\n    [Key] Test_Base REF A;\n    [Key] Test_Base REF B;\n};\n"
     '[Association]\nclass Test_X : Test_L\n{\n    [Override("A")] CIM_Zone REF A;\n};\n',
     "mof/test.mof:16: class Test_X: property A: overrides a reference to Test_Base, of which CIM_Zone is no "
     "subclass"),
    (BASE + "class Test_X\n{\n    Test_Base REF A;\n};\n",
     "mof/test.mof:9: class Test_X: property A: a reference, but the class is no association"),
    (BASE + "[Association]\nclass Test_X : Test_Base\n{\n};\n",
     "mof/test.mof:8: class Test_X: is an association but its superclass Test_Base is a class"),
    ('class Test_X\n{\n    uint32 Do(\n        [EmbeddedInstance("Test_X")] uint8 A);\n};\n',
     "mof/test.mof:4: class Test_X: method Do: parameter A: an embedded instance in a uint8, but only a string "
     "holds one"),
    (BASE + 'class Test_X : Test_Base\n{\n    [Override("Id")] uint16 Level;\n};\n',
     "mof/test.mof:9: class Test_X: property Level: overrides Id under another name"),
    ("class Test_X\n{\n    uint8 register;\n};\n",
     "mof/test.mof:3: class Test_X: property register: register cannot name a member of the generated C++ class"),
]


@pytest.mark.parametrize("mof, message", CASES, ids=[message for _, message in CASES])
def test_faulty_mof_is_refused_with_its_place(scratch, mof, message):
    scratch.write(mof)
    result = scratch.run("--class", "Test_X")
    assert result.stderr.startswith(message) or f": {message}" in result.stderr, result.stderr
    assert "Traceback" not in result.stderr
    assert result.returncode == 1
    assert not scratch.generated()


PROVIDER_CASES = [
    ("// list\nVRAX_PROVIDER(INSTANCE, x, Test_Missing)\n",
     "providers.def:2: provider Test_Missing: no MOF file declares this class"),
    ("VRAX_PROVIDER(ASSOCIATION, x, Test_Base)\n",
     "providers.def:1: provider Test_Base: registered as ASSOCIATION, but the class is a plain class"),
    ("VRAX_PROVIDER(METHOD, x, Test_Base)\n",
     "providers.def:1: provider Test_Base: unknown kind METHOD, expected INSTANCE, ASSOCIATION, INDICATION"),
    ("VRAX_PROVIDER(INSTANCE, x, Test_Base)\n/* a\n*/ VRAX_PROVIDER(INSTANCE, x, Test_base)\n",
     "providers.def:3: provider Test_base: listed twice"),
    ("VRAX_PROVIDER(INSTANCE, x, TEST_Base)\n",
     "providers.def:1: provider TEST_Base: the class is spelled Test_Base"),
    ("VRAX_PROVIDER(INSTANCE, Test_Base)\n",
     "providers.def:1: expected VRAX_PROVIDER(<kind>, <folder>, <class>)"),
]


@pytest.mark.parametrize("providers, message", PROVIDER_CASES, ids=[message for _, message in PROVIDER_CASES])
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


@pytest.mark.parametrize("mof, message", [
    ("class Test_X\n{\n    uint8 Do([In] Test_Y REF A);\n};\nclass Test_Y : Test_X\n{\n};\n",
     "mof/test.mof:1: class Test_X: names Test_Y, which cannot stand before it in one MOF file"),
    ("class Test_Y\n{\n};\nclass Test_X : Test_Y\n{\n};\n",
     "mof/test.mof:1: more than one class in a file: which goes where is unknown"),
    ("class Test_Y\n{\n};\nclass CIM_X : Test_Y\n{\n};\nclass Test_X : CIM_X\n{\n};\n",
     "mof/test.mof:4: class CIM_X: a class of the CIM Schema names Test_Y"),
], ids=["circle", "shared file", "against the schema"])
def test_mof_that_has_no_order_is_refused_with_its_place(scratch, mof, message):
    scratch.write(mof)
    result = scratch.run("--class", "Test_X", "--mof", "ordered")
    assert (result.returncode, result.stderr.strip()) == (1, message)
    assert not scratch.generated()
