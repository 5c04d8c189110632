"""What crosses the boundary as data: sizes and offsets of the records, and the bytes of the interfaces' identities."""

import subprocess
import uuid

import interfaces
import pytest

OFFSETS = {
    "guid": {"data1": 0, "data2": 4, "data3": 6, "data4": 8},
    "service_factory": {"next": 8, "class_id": 16},
}
# An interface is a pointer to its table and nothing else.
SIZES = {"guid": 16} | dict.fromkeys(interfaces.table(), 8) | {"service_factory": 24}

IDENTITIES = {
    "effect_factory::class_id": "{0D048731-8AA8-4704-8AD6-189E24D48C88}",
    "effect_factory_with_dialog::class_id": "{9EC5D45E-10F5-46A7-9546-F3ACEC68B149}",
    "effect_instance::class_id": "{9FB1DA49-AF6F-4FD2-9C73-48A8A109003B}",
    "effect_instance::abortable_class_id": "{2A42AFEA-940B-455B-AEFF-CFDACAF52AFF}",
    "layout_effect_factory::class_id": "{E3F0C95F-7A0B-48BC-9658-71A469688876}",
    "component_version::class_id": "{10BB3EBD-DDF7-4975-A3CC-23084829453E}",
    "file_name_check::class_id": "{0639283E-3004-4E5C-B1B3-6DFF08A79284}",
    "resampler_factory::class_id": "{5B8E3A54-7C1D-4F0A-9B62-0D7F6C2A91E4}",
}


def check_statically(command, claims):
    asserted = "".join(f"static_assert({claim});\n" for claim in claims)
    interfaces.compile_text([*command, "-std=c++20", "-fsyntax-only", "-Wno-invalid-offsetof"],
                            interfaces.include_all_headers() + "using namespace velmora;\n" + asserted)


@pytest.mark.parametrize("compiler", interfaces.COMPILERS.values(), ids=interfaces.COMPILERS.keys())
def test_records_have_the_same_layout_under_every_compiler(compiler):
    sizes = [f"sizeof({name}) == {size}" for name, size in SIZES.items()]
    offsets = [f"__builtin_offsetof({name}, {field}) == {offset}"
               for name, fields in OFFSETS.items() for field, offset in fields.items()]
    check_statically(compiler, sizes + offsets)


@pytest.mark.parametrize("compiler", interfaces.COMPILERS.values(), ids=interfaces.COMPILERS.keys())
def test_values_have_the_same_size_under_every_compiler(compiler):
    sizes = {"bool": 1, "uint32_t": 4, "uint64_t": 8, "size_t": 8, "double": 8, "void*": 8}
    check_statically(compiler, [f"sizeof({kind}) == {size}" for kind, size in sizes.items()])


@pytest.fixture(scope="module")
def bytes_in_memory(tmp_path_factory):
    """Constant -> its 16 bytes as a native program finds them."""
    program = tmp_path_factory.mktemp("identities") / "print_identities"
    prints = "".join(f"    print(&velmora::{name});\n" for name in IDENTITIES)
    interfaces.compile_text(["g++", "-std=c++20", "-o", str(program)], f"""#include <cstdio>
{interfaces.include_all_headers()}
void print(const void* identity) {{
    for (int at = 0; at < 16; ++at) {{
        std::printf("%02x", static_cast<const unsigned char*>(identity)[at]);
    }}
    std::puts("");
}}
int main() {{
{prints}}}
""")
    lines = subprocess.run([program], capture_output=True, text=True, check=True).stdout.split()
    return dict(zip(IDENTITIES, map(bytes.fromhex, lines), strict=True))


@pytest.mark.parametrize("name", IDENTITIES)
def test_an_identity_lies_in_memory_as_the_registry_writes_it(bytes_in_memory, name):
    assert bytes_in_memory[name] == uuid.UUID(IDENTITIES[name]).bytes_le


def test_the_table_knows_every_identity():
    declared = set()
    for name, definition in interfaces.declared_classes().items():
        constants = [node["name"] for node in definition["inner"] if node["kind"] == "VarDecl"]
        declared |= {f"{name}::{constant}" for constant in constants}
    assert declared == set(IDENTITIES)
