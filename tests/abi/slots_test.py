"""The position of every function in its interface's table, under both common layouts of such tables."""

import re

import interfaces
import pytest

NAMES = list(interfaces.table())
VALUES = {"void", "bool", "double", "size_t", "uint32_t", "uint64_t"}


def probe():
    """A function for each row of the table that calls the row's function through a pointer."""
    calls = [interfaces.include_all_headers(), "using namespace velmora;\n"]
    for name in NAMES:
        for row in interfaces.functions_of(name):
            declared = "".join(f", {kind} a{at}" for at, kind in enumerate(row.parameters))
            given = ", ".join(f"a{at}" for at in range(len(row.parameters)))
            calls.append(f'extern "C" {row.result} call_{name}_{row.slot}({name}* object{declared}) '
                         f"{{ return object->{row.name}({given}); }}\n")
    return "".join(calls)


def plain(signature):
    """A signature without name spaces and with the blanks of the table."""
    return re.sub(r"\s*(\*+)\s*(?=\w)", r"\1 ", re.sub(r"\w+::", "", signature)).replace(" *", "*").strip()


# What a class's table holds is read from the compiler's own dump of it: it names each entry with its whole signature,
# and would show the entries of a virtual destructor too. The offsets in the generated code, checked below, say where
# a caller looks, but not what is there.
def dumped_tables(compiler):
    text = interfaces.compile_text(
        [*compiler, "-std=c++20", "-Xclang", "-fdump-vtable-layouts", "-S", "-emit-llvm", "-o", "/dev/null"], probe())
    tables = {}
    for head, body in re.findall(r"^VF?[Tt]able for (.*) \(\d+ entries\)\.\n((?:.+\n)*)", text, re.MULTILINE):
        name = re.findall(r"'velmora::(\w+)'", head)[-1]
        entries = re.findall(r"^ *\d+ \| (.*)$", body, re.MULTILINE)
        tables[name] = [plain(entry.removesuffix(" [pure]")) for entry in entries
                        if not entry.endswith("RTTI") and not entry.startswith("offset_to_top")]
    return tables


@pytest.fixture(scope="module", params=[interfaces.MICROSOFT, interfaces.ITANIUM], ids=["microsoft", "itanium"])
def dumped(request):
    return dumped_tables(request.param)


@pytest.mark.parametrize("name", NAMES)
def test_every_function_stands_in_its_slot_with_its_signature(dumped, name):
    expected = {row.slot: row.signature for row in interfaces.functions_of(name)}
    assert dict(enumerate(dumped[name])) == expected


@pytest.fixture(scope="module", params=interfaces.COMPILERS.values(), ids=interfaces.COMPILERS.keys())
def assembly(request):
    return interfaces.compile_text([*request.param, "-std=c++20", "-O1", "-S", "-o", "-"], probe())


@pytest.mark.parametrize("name", NAMES)
def test_a_call_reads_the_table_at_eight_bytes_a_slot(assembly, name):
    for row in interfaces.functions_of(name):
        called = re.search(rf"^call_{name}_{row.slot}:.*?(?:jmp|call)q?\s+\*(\d*)\(%r\w+\)", assembly, re.M | re.S)
        assert int(called[1] or 0) == 8 * row.slot, row.signature


def test_the_table_knows_every_interface_and_its_base():
    declared = {}
    for name, definition in interfaces.declared_classes().items():
        bases = [base["type"]["qualType"].removeprefix("velmora::") for base in definition.get("bases", [])]
        declared[name] = bases
    assert declared == {name: [known.base] if known.base else [] for name, known in interfaces.table().items()}


@pytest.mark.parametrize("name", NAMES)
def test_an_interface_has_no_virtual_destructor_and_no_data(name):
    definition = interfaces.declared_classes()[name]
    destructors = [node for node in definition["inner"] if node["kind"] == "CXXDestructorDecl"]
    assert len(destructors) == 1 and not destructors[0].get("virtual"), "a destructor of its own, not a virtual one"
    fields = [node["name"] for node in definition["inner"] if node["kind"] == "FieldDecl"]
    assert fields == (["next", "class_id"] if name == "service_factory" else [])


@pytest.mark.parametrize("name", NAMES)
def test_an_interface_has_pure_functions_of_different_names_without_default_arguments(name):
    methods = interfaces.methods_of(interfaces.declared_classes()[name])
    names = [method["name"] for method in methods]
    inherited = [row.name for row in interfaces.functions_of(name)][: -len(names)]
    assert len(set(names + inherited)) == len(names + inherited), names
    for method in methods:
        assert method.get("pure"), method["name"]
        defaults = [part for part in method.get("inner", []) if part["kind"] == "ParmVarDecl" and "init" in part]
        assert not defaults, method["name"]


@pytest.mark.parametrize("name", NAMES)
def test_only_numbers_and_pointers_are_returned_by_value(name):
    for method in interfaces.methods_of(interfaces.declared_classes()[name]):
        result = method["type"]["qualType"].split("(")[0].strip()
        assert result in VALUES or result.endswith("*"), method["name"]
