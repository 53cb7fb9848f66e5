// Realistic CMX lists of any length, the same for the same length on every machine.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

// A list of about `events` event lines, at 25 frames: cuts, dissolves, wipes, mono
// pairs, stereo, channels 3 and 4 on "AUD" lines, picture with sound, comments and
// "FCM:" lines, on forty reels.
std::string cmx_list(std::size_t events);

}  // namespace bench
