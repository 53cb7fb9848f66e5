#!/usr/bin/env python3
"""Writes the tables of aafobj/model: baseline classes, properties and types.

Usage: generate_aaf_model.py [--check]
"""

import re
import sys

from aaf_fact_tables import Output, auid_initialiser, grouped, rows

OUT = Output("generate_aaf_model.py")
MODEL = "aafobj/model/"
SPACE = ["namespace aafobj {", ""]
END = ["", "}  // namespace aafobj"]

FORMS = {"data": "data", "data stream": "data_stream", "strong reference": "strong_reference",
         "strong reference vector": "strong_vector", "strong reference set": "strong_set",
         "weak reference": "weak_reference", "weak reference vector": "weak_vector",
         "weak reference set": "weak_set"}

KINDS = {"integer": "integer", "character": "character", "string": "string", "stream": "stream",
         "indirect": "indirect", "opaque": "opaque", "enumeration": "enumeration",
         "extendible enumeration": "extendible_enumeration", "fixed array": "fixed_array",
         "variable array": "variable_array", "set": "set", "record": "record", "rename": "rename",
         "strong object reference": "strong_reference",
         "weak object reference": "weak_reference"}


def symbol(name):
    """'StrongReferenceVector<Component>' as an enumerator."""
    return re.sub(r"\W+", "_", name).strip("_")


def enumerators(kind, names, lines, last):
    lines.append(f"enum class {kind} : std::uint8_t {{")
    lines += [f"  {symbol(n)}," for n in names]
    lines += [f"  {last}", "};", ""]


def number_array(name, kind, numbers):
    lines = [f"constinit const std::array<{kind}, {len(numbers)}> {name} = {{"]
    for i in range(0, len(numbers), 16):
        lines.append("    " + ", ".join(str(n) for n in numbers[i:i + 16]) + ",")
    return lines + ["};", ""]


def order_by_identifier(table):
    return sorted(range(len(table)), key=lambda i: table[i]["identifier"])


CLASSES = rows("classes")
TYPES = rows("types")
MEMBERS = grouped("type_members", "type")
CLASS_NAMES = [c["name"] for c in CLASSES]
TYPE_NAMES = [t["name"] for t in TYPES]


def properties_in_class_order():
    by_class = grouped("properties", "class")
    return [p for name in CLASS_NAMES for p in by_class.get(name, [])]


PROPERTIES = properties_in_class_order()


def class_table():
    lines = ["#include <array>", "#include <cstdint>", "#include <string_view>", "",
             '#include "aafobj/api/aaf_types.h"', "", *SPACE]
    enumerators("ClassIndex", CLASS_NAMES, lines, "none")
    lines += ["struct ClassRow {", "  std::string_view name;", "  aafUID_t identifier;",
              "  ClassIndex parent;  // none for the root storage's own class", "  bool is_concrete;",
              "  bool is_meta;  // belongs to the description of the model itself",
              "  std::uint16_t first_property;  // own properties, in property_table",
              "  std::uint16_t property_count;", "};", "",
              f"inline constexpr std::size_t class_count = {len(CLASSES)};",
              "extern const std::array<ClassRow, class_count> class_table;  // index is ClassIndex",
              "// Rows in the order of their identifiers.",
              "extern const std::array<std::uint8_t, class_count> class_by_identifier;", *END]
    OUT.add(MODEL + "class_table.h", "Baseline classes.", lines)

    lines = ['#include "aafobj/model/class_table.h"', "", *SPACE,
             "// name, identifier, parent, concrete, meta, first property, own properties",
             "constinit const std::array<ClassRow, class_count> class_table = {{"]
    first = 0
    for c in CLASSES:
        own = sum(1 for p in PROPERTIES if p["class"] == c["name"])
        parent = symbol(c["parent"]) if c["parent"] else "none"
        lines.append(f'    {{"{c["name"]}", {auid_initialiser(c["identifier"])}, '
                     f'ClassIndex::{parent}, {flag(c["concrete"])}, {flag(c["meta"])}, {first}, {own}}},')
        first += own
    lines += ["}};", ""]
    lines += number_array("class_by_identifier", "std::uint8_t", order_by_identifier(CLASSES))
    OUT.add(MODEL + "class_table.cpp", "Baseline classes.", lines + END[1:])


def flag(text):
    return "true" if text == "1" else "false"


def type_ref(name):
    return f"TypeIndex::{symbol(name)}" if name in TYPE_NAMES else "TypeIndex::none"


def class_ref(name):
    return f"ClassIndex::{symbol(name)}" if name else "ClassIndex::none"


def property_table():
    fixed = [i for i, p in enumerate(PROPERTIES) if p["pid"] != "dynamic"]
    by_pid = sorted(fixed, key=lambda i: int(PROPERTIES[i]["pid"], 16))
    lines = ["#include <array>", "#include <cstdint>", "#include <string_view>", "",
             '#include "aafobj/model/class_table.h"', '#include "aafobj/model/stored_form.h"',
             '#include "aafobj/model/type_table.h"', "", *SPACE,
             "struct PropertyRow {", "  std::string_view name;",
             "  std::uint16_t pid;  // 0: each file gives the property a number of its own",
             "  aafUID_t identifier;", "  ClassIndex owner;", "  TypeIndex type;",
             "  TypeIndex stored_type;  // the type that a stored definition names",
             "  StoredForm form;", "  bool is_optional;", "  bool is_unique_identifier;",
             "  std::string_view storage_name;  // empty where the form needs none", "};", "",
             f"inline constexpr std::size_t property_count = {len(PROPERTIES)};",
             f"inline constexpr std::size_t numbered_property_count = {len(fixed)};",
             "extern const std::array<PropertyRow, property_count> property_table;  // by class",
             "// Rows in the order of their identifiers, and of their numbers.",
             "extern const std::array<std::uint16_t, property_count> property_by_identifier;",
             "extern const std::array<std::uint16_t, numbered_property_count> property_by_pid;", "",
             "// Numbers of the properties, named by class and property.", "namespace pid {"]
    for i in fixed:
        p = PROPERTIES[i]
        lines.append(f'inline constexpr std::uint16_t {p["class"]}_{p["name"]} = {p["pid"]};')
    lines += ["}  // namespace pid", *END]
    OUT.add(MODEL + "property_table.h", "Baseline properties.", lines)

    lines = ['#include "aafobj/model/property_table.h"', "", *SPACE,
             "// name, number, identifier, class, type, stored type, form, optional, unique, storage",
             "constinit const std::array<PropertyRow, property_count> property_table = {{"]
    for p in PROPERTIES:
        pid = "0" if p["pid"] == "dynamic" else p["pid"]
        lines.append(f'    {{"{p["name"]}", {pid}, {auid_initialiser(p["identifier"])}, '
                     f'{class_ref(p["class"])}, {type_ref(p["type"])}, '
                     f'{type_ref(p["stored_type"] or p["type"])}, StoredForm::{FORMS[p["stored_form"]]}, '
                     f'{flag("1" if p["presence"] == "optional" else "0")}, {flag(p["unique"])}, '
                     f'"{p["storage_name"]}"}},')
    lines += ["}};", ""]
    lines += number_array("property_by_identifier", "std::uint16_t", order_by_identifier(PROPERTIES))
    lines += number_array("property_by_pid", "std::uint16_t", by_pid)
    OUT.add(MODEL + "property_table.cpp", "Baseline properties.", lines + END[1:])


def path_properties(path):
    """The properties on a weak reference's way from the root to its target set."""
    owner, found = "Root", []
    for step in path:
        row = next(p for p in PROPERTIES if p["class"] == owner and p["name"] == step)
        found.append(row)
        target = re.search(r"<(\w+)>", row["type"])
        owner = target[1] if target else ""
    return found


def member_rows(row):
    members = MEMBERS.get(row["name"], [])
    nil = auid_initialiser("00000000-0000-0000-0000-000000000000")
    if row["kind"] == "record":
        return [(m["member"], type_ref(m["value"]), 0, nil) for m in members]
    if row["kind"] == "enumeration":
        return [(m["member"], "TypeIndex::none", int(m["value"]), nil) for m in members]
    if row["kind"] == "extendible enumeration":
        return [(m["member"], "TypeIndex::none", 0, auid_initialiser(m["value"])) for m in members]
    return [(p["name"], "TypeIndex::none", p["pid"], auid_initialiser(p["identifier"]))
            for p in path_properties([m["member"] for m in members])]


def type_table():
    lines = ["#include <array>", "#include <cstdint>", "#include <string_view>", "",
             '#include "aafobj/model/class_table.h"', "", *SPACE,
             "enum class TypeKind : std::uint8_t {"]
    lines += [f"  {k}," for k in KINDS.values()] + ["};", ""]
    enumerators("TypeIndex", TYPE_NAMES, lines, "none")
    members = [member_rows(t) for t in TYPES]
    total = sum(len(m) for m in members)
    lines += ["struct TypeMemberRow {", "  std::string_view name;", "  TypeIndex type;  // of a record's field",
              "  std::int64_t value;  // of an enumeration; the number of a path's property",
              "  aafUID_t identifier;  // of an extendible enumeration; of a path's property", "};", "",
              "struct TypeRow {", "  std::string_view name;",
              "  std::string_view stored_name;  // the name that files give it", "  aafUID_t identifier;",
              "  TypeKind kind;", "  std::uint8_t size_bytes;  // stored; 0 where the value decides",
              "  bool is_signed;",
              "  TypeIndex element;  // of arrays, sets, strings; base of renames and enumerations",
              "  ClassIndex target;  // of references, and of collections of references",
              "  std::uint8_t element_count;  // of a fixed array",
              "  std::uint16_t first_member;  // in type_member_table",
              "  std::uint16_t member_count;", "};", "",
              f"inline constexpr std::size_t type_count = {len(TYPES)};",
              f"inline constexpr std::size_t type_member_count = {total};",
              "extern const std::array<TypeRow, type_count> type_table;  // index is TypeIndex",
              "extern const std::array<TypeMemberRow, type_member_count> type_member_table;",
              "// Rows in the order of their identifiers.",
              "extern const std::array<std::uint8_t, type_count> type_by_identifier;", *END]
    OUT.add(MODEL + "type_table.h", "Baseline types and their members.", lines)

    lines = ['#include "aafobj/model/type_table.h"', "", *SPACE,
             "// name, stored name, identifier, kind, size, signed, element, target, count, members",
             "constinit const std::array<TypeRow, type_count> type_table = {{"]
    first = 0
    for t, m in zip(TYPES, members):
        lines.append(f'    {{"{t["name"]}", "{t["stored_name"]}", {auid_initialiser(t["identifier"])}, '
                     f'TypeKind::{KINDS[t["kind"]]}, {t["size"] or 0}, {flag(t["signed"])}, '
                     f'{type_ref(t["element_or_base"])}, {class_ref(t["target_class"])}, '
                     f'{t["count"] or 0}, {first}, {len(m)}}},')
        first += len(m)
    lines += ["}};", "", "// name, type, value, identifier",
              "constinit const std::array<TypeMemberRow, type_member_count> type_member_table = {{"]
    for name, kind, value, identifier in (m for group in members for m in group):
        lines.append(f'    {{"{name}", {kind}, {value}, {identifier}}},')
    lines += ["}};", ""]
    lines += number_array("type_by_identifier", "std::uint8_t", order_by_identifier(TYPES))
    OUT.add(MODEL + "type_table.cpp", "Baseline types and their members.", lines + END[1:])


def main():
    class_table()
    property_table()
    type_table()
    return OUT.finish(sys.argv[1:])


if __name__ == "__main__":
    sys.exit(main())
