// A flag of the process, read from the registry with each list whose sources are Sound
// Designer II files: source times of such lists count from the start of the file.
#pragma once

namespace adl {

[[nodiscard]] bool timestamp_frig();

}  // namespace adl
