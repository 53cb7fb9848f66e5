// Builds the files of this folder's tests field by field, and reads the golden ones.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace native_test {

// Little-endian words.
std::string le16(unsigned value);
std::string le32(std::uint32_t value);
std::string le_float(float value);
std::string zeros(std::size_t count);
// `value` and NULs up to `width`, which it may fill.
std::string text(std::string_view value, std::size_t width);
// `bytes` with `patch` written over it at `offset`.
std::string patched(std::string bytes, std::size_t offset, std::string_view patch);
std::string joined(std::initializer_list<std::string> parts);

// Pairs of hex digits; from "#" to the end of the line is comment.
std::string from_hex(std::string_view hex);
// The bytes of tests/golden/native/<name>, a hex file with a comment a field.
std::string golden_bytes(const std::string& name);

// Pieces of the chunked file.
std::string chunk(std::string_view id, std::string_view body, unsigned major = 0,
                  unsigned minor = 0);
// A list whose count is that of its items.
std::string list_chunk(std::string_view id, std::initializer_list<std::string> items,
                       unsigned major = 0, unsigned minor = 0);
std::string file_head();
// HDR1 0.1: 48000 Hz, 25 frames, one stream.
std::string head_chunk();
// The two in front of `lists`.
std::string chunk_file(std::initializer_list<std::string> lists);

// Bodies. An edit of track 0 from 96000 to 120000 on stream 0, and its track.
std::string entry_body();
std::string track_body();
// A PQ header for `count` entries, an entry at 96000, texts of a disc.
std::string pq_header_body(unsigned count);
std::string pq_entry_body();
std::string pq_details_body();
std::string locator(std::uint32_t time, std::string_view name, unsigned value);
// The same bodies as items.
std::string entry_item(unsigned major = 0, unsigned minor = 0);
std::string track_item(unsigned major = 0, unsigned minor = 2);
std::string pq_header_item(unsigned count);
std::string pq_entry_item();

}  // namespace native_test
