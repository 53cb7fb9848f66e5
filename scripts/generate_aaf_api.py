#!/usr/bin/env python3
"""Writes the headers of aafobj/api: the published AAF declarations.

Usage: generate_aaf_api.py [--check]
"""

import re
import sys

from aaf_fact_tables import Output, auid_initialiser, grouped, rows

OUT = Output("generate_aaf_api.py")
API = "aafobj/api/"

# Tags that the published declarations give these two structures.
STRUCT_TAGS = {"aafUID_t": "_aafUID_t", "aafMobID_t": "_aafMobID_t"}

INTERFACE_GROUPS = {
    "file": "The file, its header, identifications and content, raw storages and progress.",
    "mob": "Mobs, their slots, and what hangs on them.",
    "component": "Components of a mob slot, and parameters of effects.",
    "definition": "The dictionary and its definition objects.",
    "meta": "Objects in general: properties, classes and types.",
    "descriptor": "Essence descriptors and locators.",
    "essence": "Essence data and the access to its samples.",
    "enumerator": "Enumerators: each starts before its first element.",
}


def alias(name, underlying):
    array = re.fullmatch(r"(\w+)\[(\w+)\]", underlying)
    if array:
        return f"typedef {array[1]} {name}[{array[2]}];"
    fixed = {"long (int64_t)": "std::int64_t", "unsigned long (uint64_t)": "std::uint64_t",
             "struct _aafUID_t": "aafUID_t"}
    underlying = re.sub(r" ([*&])$", r"\1", fixed.get(underlying, underlying))
    return f"using {name} = {underlying};"


def size_check(row):
    if row["type"].endswith("&"):
        return []
    name = row["name"]
    return [f"static_assert(sizeof({name}) == {row['size']});",
            f"static_assert(alignof({name}) == {row['align']});"]


def struct_names():
    return list(grouped("structs", "struct"))


def split_typedefs():
    """Aliases of scalars, which structures need, then those of structures."""
    structs = set(struct_names())
    scalar, compound = [], []
    of_struct = set(structs)
    for row in rows("typedefs"):
        words = set(re.findall(r"\w+", row["type"].replace("_aafUID_t", "aafUID_t")))
        if words & of_struct:
            compound.append(row)
            of_struct.add(row["name"])
        else:
            scalar.append(row)
    base = [r for r in scalar if not re.search(r"aaf|AAF", r["type"])]
    rest = [r for r in scalar if r not in base]
    return base, order_aliases(rest, {r["name"] for r in base}), compound


def order_aliases(pending, known):
    done = []
    known = known | {"MAX_NUM_RGBA_COMPS", "kAAFEtHeaderSize", "const", "unsigned", "char"}
    while pending:
        ready = [r for r in pending if set(re.findall(r"[A-Za-z_]\w*", r["type"])) <= known]
        if not ready:
            raise SystemExit(f"no order for {[r['name'] for r in pending]}")
        done += ready
        known |= {r["name"] for r in ready}
        pending = [r for r in pending if r not in ready]
    return done


def enumerations():
    lines = []
    for group, members in grouped("enumerators", "group").items():
        lines.append(f"enum {group} : aafInt32 {{")
        lines += [f"  {m['name']} = {m['value']}," for m in members]
        lines += ["};", ""]
    return lines


def struct_body(fields):
    lines, in_union = [], False
    for field in fields:
        name, kind = field["field"], field["type"]
        if kind == "union":
            lines.append("  union {")
            in_union = True
            continue
        member = name.startswith("tags.")
        if in_union and not member:
            lines.append("  } tags;")
            in_union = False
        name = name.removeprefix("tags.")
        indent = "    " if member else "  "
        array = re.fullmatch(r"(\w+)\[(\d+)\]", kind)
        kind = re.sub(r" \*$", "*", kind)
        lines.append(f"{indent}{array[1]} {name}[{array[2]}];" if array else f"{indent}{kind} {name};")
    if in_union:
        lines.append("  } tags;")
    return lines


def struct_lines(name, fields):
    tag = STRUCT_TAGS.get(name, name)
    lines = [f"struct {tag} {{", *struct_body(fields), "};"]
    if tag != name:
        lines.append(f"using {name} = {tag};")
    lines.append(f"static_assert(sizeof({name}) == {fields[0]['struct_size']});")
    lines.append(f"static_assert(alignof({name}) == {fields[0]['struct_align']});")
    for field in fields:
        if field["offset"] != "0":
            lines.append(f"static_assert(offsetof({name}, {field['field']}) == {field['offset']});")
    return lines + [""]


def ordered_structs():
    """Structures in an order in which each follows what it holds by value."""
    pending = grouped("structs", "struct")
    done = {}
    while pending:
        ready = [n for n, f in pending.items()
                 if not any(x["type"] in pending and x["type"] != n for x in f)]
        for name in ready:
            done[name] = pending.pop(name)
    return done


def types_header():
    base, scalars, compound = split_typedefs()
    lines = ["#include <cstddef>", "#include <cstdint>", "",
             "inline constexpr int MAX_NUM_RGBA_COMPS = 8;", ""]
    for row in base:
        lines += [alias(row["name"], row["type"]), *size_check(row)]
    lines += ["", "// Identifier of an interface or of a class of objects.", "struct GUID {",
              "  DWORD Data1;", "  std::uint16_t Data2;", "  std::uint16_t Data3;",
              "  std::uint8_t Data4[8];", "};",
              "static_assert(sizeof(GUID) == 16);", "static_assert(alignof(GUID) == 4);", "using IID = GUID;",
              "using CLSID = GUID;", "using REFGUID = const GUID&;", "using REFIID = const IID&;",
              "using REFCLSID = const CLSID&;", ""]
    lines += enumerations()
    for row in scalars:
        lines += [alias(row["name"], row["type"]), *size_check(row)]
    lines.append("")
    early = [r for r in compound if r["type"] == "struct _aafUID_t"]
    late = [r for r in compound if r not in early]
    structs = ordered_structs()
    lines += struct_lines("aafUID_t", structs.pop("aafUID_t"))
    for row in early:
        lines += [alias(row["name"], row["type"]), *size_check(row)]
    lines.append("")
    for name, fields in structs.items():
        lines += struct_lines(name, fields)
    for row in order_aliases(late, set(struct_names()) | {r["name"] for r in base + scalars + early}):
        lines += [alias(row["name"], row["type"]), *size_check(row)]
    OUT.add(API + "aaf_types.h",
            "Scalars, enumerations and structures of the published interfaces, with the sizes\n"
            "and offsets that they have on Linux x86-64. An enumeration is passed as a 32-bit\n"
            "integer, and a character is the platform's wide character.", lines)


def result_codes_header():
    lines = ['#include "aafobj/api/aaf_types.h"', ""]
    for row in rows("result_codes"):
        kind = "HRESULT" if row["group"] == "platform" else "AAFRESULT"
        lines.append(f"inline constexpr {kind} {row['name']} = static_cast<{kind}>({row['code']}u);")
    lines += ["", "// Mode flags of the operations that open a file.", ""]
    for row in rows("mode_flags"):
        lines.append(f"inline constexpr aafUInt32 {row['name']} = {row['value']}u;")
    OUT.add(API + "aaf_result_codes.h",
            "Result codes and mode flags. A negative code is a failure.", lines)


def parameter_list(text):
    parts = [re.sub(r"\s+", " ", p.strip()) for p in text.split(";") if p.strip()]
    return parts


def method(row):
    parts = parameter_list(row["parameters"])
    line = f"  virtual {row['returns']} {row['method']}({', '.join(parts)}) = 0;"
    if len(line) <= 100:
        return [line]
    lines = [f"  virtual {row['returns']} {row['method']}("]
    for i, part in enumerate(parts):
        lines.append(f"      {part}{',' if i + 1 < len(parts) else ') = 0;'}")
    return lines


def interface(row, methods):
    name = row["interface"]
    base = "" if name == "IUnknown" else " : IUnknown"
    lines = [f"inline constexpr IID IID_{name} = {auid_initialiser(row['identifier'])};",
             f"struct {name}{base} {{"]
    for entry in methods.get(name, []):
        lines += method(entry)
    return lines + ["", " protected:", f"  ~{name}() = default;", "};", ""]


def interface_headers():
    methods = grouped("methods", "interface")
    groups = grouped("interfaces", "header")
    forward = ['#include "aafobj/api/aaf_types.h"', ""]
    forward += [f"struct {row['interface']};" for row in rows("interfaces")]
    OUT.add(API + "aaf_forward.h", "Names of all interfaces.", forward)
    lines = ['#include "aafobj/api/aaf_forward.h"', ""]
    for row in groups["unknown"]:
        lines += interface(row, methods)
    OUT.add(API + "aaf_unknown.h",
            "The interface on which all others stand. Reference counts begin at 1; what an\n"
            "operation hands out carries a reference of the caller's. There is no virtual\n"
            "destructor: Release ends an object.", lines)
    for group, summary in INTERFACE_GROUPS.items():
        lines = ['#include "aafobj/api/aaf_unknown.h"', ""]
        for row in groups[group]:
            lines += interface(row, methods)
        OUT.add(f"{API}aaf_{group}_interfaces.h",
                summary + "\nOperations stand in the order of their slots.", lines)
    lines = [f'#include "aafobj/api/aaf_{group}_interfaces.h"' for group in sorted(INTERFACE_GROUPS)]
    OUT.add(API + "aaf_interfaces.h", "All interfaces.", lines)


def identifier_headers():
    lines = ['#include "aafobj/api/aaf_types.h"', ""]
    for row in rows("classes"):
        if not row["short_name"]:
            continue
        names = [row["short_name"]] + ([row["name"]] if row["name"] != row["short_name"] else [])
        for name in names:
            lines.append(f"inline constexpr aafUID_t AUID_AAF{name} = {auid_initialiser(row['identifier'])};")
    OUT.add(API + "aaf_class_ids.h", "Identifiers of the classes, under both of their names.", lines)
    lines = ['#include "aafobj/api/aaf_types.h"']
    for group, members in grouped("well_known_ids", "group").items():
        lines += ["", f"// {group[0].upper()}{group[1:]}s."]
        lines += [f"inline constexpr aafUID_t {m['name']} = {auid_initialiser(m['identifier'])};"
                  for m in members]
    OUT.add(API + "aaf_well_known_ids.h", "Identifiers of definitions and values that files name.",
            lines)


def entry_points_header():
    lines = ['#include "aafobj/api/aaf_forward.h"', "",
             "#define AAF_ENTRY_POINT extern \"C\" __attribute__((visibility(\"default\"))) HRESULT", ""]
    for row in rows("entry_points"):
        parts = [re.sub(r"\s+", " ", p.strip()) for p in row["parameters"].split(";") if p.strip()]
        line = f"AAF_ENTRY_POINT {row['name']}({', '.join(parts)});"
        if len(line) > 100:
            line = f"AAF_ENTRY_POINT {row['name']}(\n    " + ",\n    ".join(parts) + ");"
        lines.append(line)
    OUT.add(API + "aaf_entry_points.h",
            "The flat entry points by which a program reaches the library.", lines)


def main():
    types_header()
    result_codes_header()
    interface_headers()
    identifier_headers()
    entry_points_header()
    return OUT.finish(sys.argv[1:])


if __name__ == "__main__":
    sys.exit(main())
