// The makers of the rows, one per family of formats.
#pragma once

#include "formats/format_table.h"

FormatRow aaf_row();
FormatRow adl_row();
FormatRow cmx340_row();
FormatRow cmx3600_row();
FormatRow edl2_row();
FormatRow chunked_row();
FormatRow sony9000_row();
FormatRow grass_valley_row();
FormatRow lightworks_row();
FormatRow lightworks_multichannel_row();
FormatRow native_text_row();
