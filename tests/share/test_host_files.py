"""What share/vrax-host-files writes is whole, in order, and loads with a MOF compiler from top to bottom."""

import pathlib
import re
import shutil
import subprocess

import pytest
import pywbem
from genclass import model, mof, registration

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = "vrax-host-files"
TYPES = {"INSTANCE": [2, 5], "ASSOCIATION": [2, 3, 5], "INDICATION": [4, 5]}
# Classes of OpenPegasus that the registration is instances of.
PEGASUS_CLASSES = """
class PG_ProviderModule { [Key] string Name; string Vendor; string Version; string InterfaceType;
    string InterfaceVersion; string Location; };
class PG_Provider { [Key] string ProviderModuleName; [Key] string Name; };
class PG_ProviderCapabilities { [Key] string ProviderModuleName; [Key] string ProviderName;
    [Key] string CapabilityID; string ClassName; string Namespaces[]; uint16 ProviderType[]; };
"""


def run(program, *arguments):
    return subprocess.run([program, *arguments], capture_output=True, text=True, check=False)


@pytest.fixture(scope="module")
def written(tmp_path_factory):
    folder = tmp_path_factory.mktemp("host")
    for server in ("sfcb", "openpegasus"):
        done = run(ROOT / "share" / COMMAND, server, "--output", folder / server)
        assert done.returncode == 0, done.stderr
    return folder


@pytest.fixture(scope="module")
def entries():
    return registration.read(ROOT / "common/providers.def")


class InOrder(pywbem.MOFWBEMConnection):
    """A repository that refuses a class that names one which is not there yet, as servers do."""

    def __init__(self):
        super().__init__()
        self.names = []
        self.instances_of = {}

    def CreateClass(self, *args, **kwargs):  # the compiler's name for it
        new = args[0] if args else kwargs["NewClass"]
        declared = [*new.properties.values(), *new.methods.values()]
        declared += [parameter for method in new.methods.values() for parameter in method.parameters.values()]
        needed = {element.target for element in map(model.element, declared)} | {new.superclass}
        assert needed - {None, model.INSTANCE} <= set(self.names), new.classname
        self.names.append(new.classname)
        super().CreateClass(*args, **kwargs)

    def CreateInstance(self, *args, **kwargs):
        new = args[0] if args else kwargs["NewInstance"]
        self.instances_of.setdefault(new.classname, []).append({name: new[name] for name in new})


def compiled(*files, text=""):
    repository = InOrder()
    compiler = pywbem.MOFCompiler(repository, search_paths=[], log_func=None)
    compiler.compile_string(text, "root/interop")
    for file in files:
        compiler.compile_file(str(file), "root/interop")
    return repository


@pytest.mark.parametrize("files", [
    ["openpegasus/classes.mof"],
    ["sfcb/schema/CIM_Schema.mof", "sfcb/vendor.mof"],
    ["sfcb/schema/CIM_Schema.mof", "openpegasus/vendor.mof"],
])
def test_every_class_comes_once_and_after_what_it_names(written, entries, files):
    names = compiled(*(written / file for file in files)).names
    assert sorted(names) == sorted(mof.MofReader([str(ROOT / "schema")]).class_names())
    assert {entry.name for entry in entries} <= set(names)


def test_openpegasus_gets_one_module_with_all_classes(written, entries):
    qualifiers = (ROOT / "schema/qualifiers.mof").read_text(encoding="utf-8")
    found = compiled(written / "openpegasus/registration.mof", text=qualifiers + PEGASUS_CLASSES).instances_of
    module, = found["PG_ProviderModule"]
    interface = module["InterfaceType"], module["InterfaceVersion"], module["Location"]
    assert interface == ("CMPI", "2.0.0", "vraxproviders")
    capabilities = found["PG_ProviderCapabilities"]
    assert [(c["ClassName"], c["ProviderType"]) for c in capabilities] == [(e.name, TYPES[e.kind]) for e in entries]
    assert len({c["CapabilityID"] for c in capabilities}) == len(entries)
    assert all(c["Namespaces"] == ["root/interop"] for c in capabilities)
    providers = [(p["ProviderModuleName"], p["Name"]) for p in found["PG_Provider"]]
    assert providers == [(c["ProviderModuleName"], c["ProviderName"]) for c in capabilities]
    assert set(providers) == {(module["Name"], e.name) for e in entries}


@pytest.fixture
def installed(tmp_path, written):
    """The program and its input where packages put them."""
    (tmp_path / "bin").mkdir()
    shutil.copy(ROOT / "share" / COMMAND, tmp_path / "bin")
    data = tmp_path / "share/cimd"
    shutil.copytree(written / "sfcb/schema", data / "mof")
    for name, to in (("vendor.mof", data / "mof"), ("providers.reg", data)):
        shutil.copy(written / "sfcb" / name, to)
    return tmp_path


def test_installed_files_give_the_same_in_any_namespace(installed, written, entries):
    done = run(installed / "bin" / COMMAND, "sfcb", "--output", installed / "out", "--namespace", "root/fabric")
    assert done.returncode == 0, done.stderr
    text = (installed / "out/providers.reg").read_text(encoding="utf-8")
    assert re.findall(r"(?m)^\[(.*)\]", text) == [entry.name for entry in entries]
    assert re.findall(r"namespace: (.*)", text) == ["root/fabric"] * len(entries)
    assert text.replace("root/fabric", "root/interop") == (written / "sfcb/providers.reg").read_text(encoding="utf-8")


@pytest.mark.parametrize("registered, message", [
    ("[A]\n provider: A\n location: x\n type: instance\n", "[A] has no namespace"),
    ("provider: A\n", "providers.reg:1: expected [CLASS]"),
    ("[A]\n provider: A\n location: x\n type: instance query\n namespace: n\n", "[A] has the unknown type query"),
])
def test_a_faulty_registration_is_named(installed, registered, message):
    (installed / "share/cimd/providers.reg").write_text(registered, encoding="utf-8")
    done = run(installed / "bin" / COMMAND, "openpegasus", "--output", installed / "out")
    assert (done.returncode, message in done.stderr) == (1, True), done.stderr
    assert not (installed / "out").exists()
