"""The files the generator writes: which, when, and what the agent reads from them."""

import os
import re
import xml.etree.ElementTree as ET

from genclass_run import SCHEMA

MOF = """\
class Test_Part
{
    uint8 Size;
};
class Test_Base
{
    [Key] string Id;
    [Write, ValueMap{"0", "1"}, Values{"Off", "On & off"}] uint16 State = 1;
    string Lines[] = {"a <b>", "c\\nd"};
    uint8 Codes[4];
    [EmbeddedInstance("Test_Part")] string Part;
    [Static] uint32 Do([In] Test_Base REF Others[], [In(false), Out] string Names[], [In] Test_Base REF One);
};
[Version("1.0.0")]
class Test_Leaf : Test_Base
{
    [Override("State")] uint16 State;
};
[Association]
class Test_Link
{
    [Key] Test_Leaf REF A;
    [Key] Test_Base REF B;
};
class Test_Stranger
{
    uint8 Size;
};
"""

PROVIDERS = """\
VRAX_PROVIDER(ASSOCIATION, linkProviders, Test_Link)
// VRAX_PROVIDER(INSTANCE, partProviders, Test_Part)
VRAX_PROVIDER(INSTANCE, leafProviders, Test_Leaf)
"""


def generate(scratch, mof=MOF):
    scratch.write(mof)
    scratch.providers(PROVIDERS)
    result = scratch.run()
    assert result.returncode == 0, result.stderr


def test_only_what_registered_classes_need_is_generated(scratch):
    generate(scratch)
    sources = {f"{name}.{kind}" for name in ("Test_Base", "Test_Leaf", "Test_Link", "Test_Part", "repository")
               for kind in ("h", "cpp")}
    assert set(scratch.generated()) == sources | {"Test_Leaf_Methods.h", "Test_Link_Methods.h", "Method_Dispatch.h",
                                                  "providers_includes.h"}
    includes = [line for line in scratch.generated()["providers_includes.h"].read_text().splitlines()
                if line.startswith("#include")]
    assert re.findall(r"\[(.*)\]", (scratch.folder / "providers.reg").read_text()) == ["Test_Link", "Test_Leaf"]
    assert includes == ['#include "linkProviders/Test_Link_Provider.h"',
                        '#include "leafProviders/Test_Leaf_Provider.h"']


def test_listed_files_are_those_read_and_written(scratch):
    scratch.write(MOF)
    scratch.write("class Test_Elsewhere\n{\n};\n", "other.mof")
    scratch.providers(PROVIDERS)
    listed = scratch.run("--list").stdout.splitlines()
    assert not scratch.generated()
    assert scratch.run().returncode == 0
    written = {str(path.relative_to(scratch.folder)) for path in scratch.folder.rglob("*") if path.is_file()}
    assert {line[4:] for line in listed if line.startswith("out ")} == written - {
        "mof/test.mof", "mof/other.mof", "providers.def"}
    assert [line[3:] for line in listed if line.startswith("in ")] == [str(SCHEMA / "qualifiers.mof"), "mof/test.mof"]


def test_a_change_rewrites_only_the_files_it_changes(scratch):
    generate(scratch)
    for path in scratch.folder.rglob("*"):
        os.utime(path, ns=(1, 1))
    leaf = "class Test_Leaf : Test_Base\n{"
    generate(scratch, MOF.replace(leaf, f"{leaf}\n    uint8 More;"))
    touched = {path.name for path in scratch.folder.rglob("*") if path.is_file() and path.stat().st_mtime_ns != 1}
    assert touched - {"test.mof", "providers.def"} == {"Test_Leaf.h", "Test_Leaf.cpp", "repository.xml"}


def test_repository_declares_classes_before_those_that_need_them(scratch):
    generate(scratch)
    group = ET.parse(scratch.folder / "repository.xml").getroot().find("DECLARATION/DECLGROUP")
    kinds = [child.tag for child in group]
    assert kinds == sorted(kinds), "qualifier types first"
    classes = [value.find("CLASS") for value in group.findall("VALUE.OBJECT")]
    assert [(c.get("NAME"), c.get("SUPERCLASS")) for c in classes] == [
        ("Test_Part", None), ("Test_Base", None), ("Test_Leaf", "Test_Base"), ("Test_Link", None)]
    key = group.find("QUALIFIER.DECLARATION[@NAME='Key']")
    assert key.get("OVERRIDABLE") == "false" and key.find("SCOPE").get("REFERENCE") == "true"
    abstract = group.find("QUALIFIER.DECLARATION[@NAME='Abstract']")
    assert abstract.get("TOSUBCLASS") == "false"


def test_a_superclass_that_refers_to_its_subclass_still_comes_first(scratch):
    scratch.write(MOF.replace("[In] Test_Base REF One", "[In] Test_Other REF One")
                  + "class Test_Other\n{\n    uint8 Do([In] Test_Leaf REF A);\n};\n")
    assert scratch.run("--class", "Test_Base").returncode == 0
    declared = [c.get("NAME") for c in ET.parse(scratch.folder / "repository.xml").getroot().iter("CLASS")]
    assert sorted(declared) == ["Test_Base", "Test_Leaf", "Test_Other", "Test_Part"]
    assert declared.index("Test_Base") < declared.index("Test_Leaf")


def test_characters_stand_for_themselves_in_the_repository(scratch):
    scratch.write("class Test_X\n{\n    char16 A = '\\x263A';\n    char16 B[] = {'\\x0035', '&', '\\n'};\n};\n")
    result = scratch.run("--class", "Test_X")
    assert result.returncode == 0, result.stderr
    values = [value.text for value in ET.parse(scratch.folder / "repository.xml").getroot().iter("VALUE.OBJECT")
              for value in value.iter("VALUE")]
    assert values == ["\u263a", "5", "&", "\n"]


def test_an_included_file_is_read_and_listed(scratch):
    (scratch.folder / "parts").mkdir()
    scratch.write("class Test_Base\n{\n    [Key] string Id;\n};\n", "../parts/base.mof")
    scratch.write('#pragma include ("../parts/base.mof")\nclass Test_X : Test_Base\n{\n};\n')
    result = scratch.run("--class", "Test_X", "--list")
    assert result.returncode == 0, result.stderr
    assert "in parts/base.mof" in result.stdout.splitlines()


def test_repository_holds_each_classs_own_declarations(scratch):
    generate(scratch)
    classes = {c.get("NAME"): c for c in ET.parse(scratch.folder / "repository.xml").getroot().iter("CLASS")}
    base = classes["Test_Base"]
    assert [(p.tag, p.get("NAME"), p.get("TYPE")) for p in base if p.tag.startswith("PROPERTY")] == [
        ("PROPERTY", "Id", "string"), ("PROPERTY", "State", "uint16"), ("PROPERTY.ARRAY", "Lines", "string"),
        ("PROPERTY.ARRAY", "Codes", "uint8"), ("PROPERTY", "Part", "string")]
    state = base.find("PROPERTY[@NAME='State']")
    assert state.find("VALUE").text == "1"
    assert [v.text for v in state.findall("QUALIFIER[@NAME='Values']/VALUE.ARRAY/VALUE")] == ["Off", "On & off"]
    assert state.find("QUALIFIER[@NAME='Write']/VALUE").text == "TRUE"
    assert [v.text for v in base.findall("PROPERTY.ARRAY[@NAME='Lines']/VALUE.ARRAY/VALUE")] == ["a <b>", "c\nd"]
    assert base.find("PROPERTY.ARRAY[@NAME='Codes']").get("ARRAYSIZE") == "4"
    method = base.find("METHOD")
    assert (method.get("NAME"), method.get("TYPE")) == ("Do", "uint32")
    assert [(p.tag, p.get("NAME"), p.get("REFERENCECLASS") or p.get("TYPE"))
            for p in method if p.tag.startswith("PARAMETER")] == [
                ("PARAMETER.REFARRAY", "Others", "Test_Base"), ("PARAMETER.ARRAY", "Names", "string"),
                ("PARAMETER.REFERENCE", "One", "Test_Base")]
    assert method.find("PARAMETER.ARRAY/QUALIFIER[@NAME='In']/VALUE").text == "FALSE"
    assert [p.get("NAME") for p in classes["Test_Leaf"] if p.tag == "PROPERTY"] == ["State"]
    assert [(p.get("NAME"), p.get("REFERENCECLASS")) for p in classes["Test_Link"].findall("PROPERTY.REFERENCE")] == [
        ("A", "Test_Leaf"), ("B", "Test_Base")]
    assert not [e for e in base.iter() if "PROPAGATED" in e.attrib or "CLASSORIGIN" in e.attrib]
