// The makers of the rows, one per family of formats.
#pragma once

#include "formats/format_table.h"

FormatRow cmx340_row();
FormatRow cmx3600_row();
