#pragma once

#include "formats/format_table.h"

FormatRow tally_row();
