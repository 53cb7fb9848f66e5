// The commands. Each answers the program's exit code.
#pragma once

#include <span>

#include "cli/arguments.h"
#include "embedded/embedded_host.h"
#include "formats/format_table.h"

namespace cli {

int convert(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host);
int inspect(std::span<const FormatRow> rows, const Arguments& arguments,
            embedded::EmbeddedHost& host);
// Shows every object of an AAF file, which no other command does.
int dump_aaf(const Arguments& arguments);
int list_formats(std::span<const FormatRow> rows, bool json);

}  // namespace cli
