#!/usr/bin/env python3
"""Writes aafobj/objects/not_offered_*.h and result_text.cpp.

Usage: generate_aaf_objects.py [--check]
"""

import re
import sys

from aaf_fact_tables import Output, grouped, rows

OUT = Output("generate_aaf_objects.py")
OBJECTS = "aafobj/objects/"


def types_only(text):
    """The parameter list without the names."""
    parts = [re.sub(r"\s+", " ", p.strip()) for p in text.split(";") if p.strip()]
    return ", ".join(re.sub(r"\s*\w+$", "", p) for p in parts)


def class_lines(name, methods):
    lines = ["template <>", f"struct NotOffered<{name}> : {name} {{",
             f"  static constexpr const IID& interface_id = IID_{name};"]
    for m in methods.get(name, []):
        lines.append(f"  {m['returns']} {m['method']}({types_only(m['parameters'])}) override "
                     "{ return AAFRESULT_NOT_IMPLEMENTED; }")
    return lines + ["", " protected:", "  ~NotOffered() = default;", "};", ""]


def result_texts():
    lines = ['#include "aafobj/objects/result_text.h"', "", '#include "aafobj/model/stored_values.h"',
             "", "namespace aafobj {", "", "std::u16string result_text_of(AAFRESULT code) {",
             "  switch (static_cast<aafUInt32>(code)) {"]
    seen = set()
    for row in rows("result_codes"):
        if row["code"] in seen:
            continue
        seen.add(row["code"])
        lines.append(f'    case {row["code"]}u: return u"{row["name"]}";')
    lines += ["    default: return {};", "  }", "}", "", "}  // namespace aafobj"]
    OUT.add(OBJECTS + "result_text.cpp", "Names of result codes.", lines)


def main():
    result_texts()
    methods = grouped("methods", "interface")
    for group, members in grouped("interfaces", "header").items():
        if group == "unknown":
            continue
        lines = [f'#include "aafobj/api/aaf_{group}_interfaces.h"',
                 '#include "aafobj/objects/not_offered.h"', "", "namespace aafobj {", ""]
        for row in members:
            lines += class_lines(row["interface"], methods)
        lines += ["}  // namespace aafobj"]
        OUT.add(f"{OBJECTS}not_offered_{group}.h",
                "The interfaces with each operation answered by \"not implemented\".", lines)
    return OUT.finish(sys.argv[1:])


if __name__ == "__main__":
    sys.exit(main())
