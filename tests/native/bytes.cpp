#include "tests/native/bytes.h"

#include <bit>
#include <cctype>
#include <cstdlib>
#include <map>
#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace native_test {

std::string le16(unsigned value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}

std::string le32(std::uint32_t value) {
  return le16(value & 0xFFFF) + le16(value >> 16);
}

std::string le_float(float value) {
  return le32(std::bit_cast<std::uint32_t>(value));
}

std::string zeros(std::size_t count) {
  return std::string(count, '\0');
}

std::string text(std::string_view value, std::size_t width) {
  std::string field(value);
  field.resize(width, '\0');
  return field;
}

std::string patched(std::string bytes, std::size_t offset, std::string_view patch) {
  if (offset + patch.size() > bytes.size()) throw std::out_of_range("patch");
  bytes.replace(offset, patch.size(), patch);
  return bytes;
}

std::string joined(std::initializer_list<std::string> parts) {
  std::string all;
  for (const std::string& part : parts)
    all += part;
  return all;
}

std::string from_hex(std::string_view hex) {
  std::string bytes;
  std::string digits;
  bool comment = false;
  for (const char c : hex) {
    if (c == '\n') comment = false;
    if (c == '#') comment = true;
    if (comment || std::isspace(static_cast<unsigned char>(c)) != 0) continue;
    if (std::isxdigit(static_cast<unsigned char>(c)) == 0) throw std::runtime_error("not hex");
    digits.push_back(c);
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<char>(std::strtol(digits.c_str(), nullptr, 16)));
    digits.clear();
  }
  if (!digits.empty()) throw std::runtime_error("half a byte");
  return bytes;
}

std::string golden_bytes(const std::string& name) {
  static std::map<std::string, std::string> known;
  const auto at = known.find(name);
  if (at != known.end()) return at->second;
  return known[name] =
             from_hex(support::read_file(std::string(EDL_TEST_GOLDEN) + "/native/" + name));
}

std::string chunk(std::string_view id, std::string_view body, unsigned major, unsigned minor) {
  return joined({std::string(id), le16(major), le16(minor),
                 le32(static_cast<std::uint32_t>(body.size())), std::string(body)});
}

std::string list_chunk(std::string_view id, std::initializer_list<std::string> items,
                       unsigned major, unsigned minor) {
  return chunk(id, le32(static_cast<std::uint32_t>(items.size())) + joined(items), major, minor);
}

std::string file_head() {
  return joined({le32(0x76172794),  // magic
                 le16(0), le16(0)});
}

std::string head_chunk() {
  return chunk("HDR1",
               joined({le32(48000),  // samples per second
                       le16(1),      // frame rate: 25
                       le16(1),      // streams
                       le32(0)}),    // value of stream 0
               0, 1);
}

std::string chunk_file(std::initializer_list<std::string> lists) {
  return file_head() + head_chunk() + joined(lists);
}

std::string entry_body() {
  return joined({text("Dialogue take 1", 16),
                 le32(96000),       // destination in
                 le32(48000),       // source in
                 le32(24000),       // length
                 le16(2),           // fade-in curve
                 le16(0),           // fade-out curve
                 le32(480),         // fade-in length
                 le32(240),         // fade-out length
                 le32(0xFFFFFFFF),  // third position
                 le_float(1.0F),    // level
                 le16(0),           // track index
                 le16(1),           // streams
                 le32(0),           // flags
                 le16(0),           // first stream
                 le16(0)});         // channel offset
}

std::string track_body() {
  return joined({le16(0),                       // index
                 text("TAKE12", 64), le16(11),  // source type
                 le32(0),                       // source time word
                 text("//C:/audio/TAKE12", 128), text("REEL1", 12),
                 le16(0),                       // source channel
                 le16(0),                       // first channel
                 le32(1000),                    // time stamp
                 le16(1),                       // channels
                 le16(0),                       // reserved
                 text("MARLO", 32), le32(7)});  // source word
}

std::string pq_header_body(unsigned count) {
  return joined({text("0000000000000", 13), zeros(1), le16(count)});
}

std::string pq_entry_body() {
  return joined({le32(96000),  // time
                 le16(1),      // track
                 le16(1),      // index
                 text("Title", 32), text("Artist", 32),
                 le16(1),  // flags
                 le16(0), text("GBAAA0012345", 12), text("Note", 64)});
}

std::string pq_details_body() {
  std::string body;
  for (const char* const part : {"one", "two", "three", "four", "five", "six", "seven"})
    body += text(part, 128);
  return body + le16(0x1234) + le16(0);  // value, reserved
}

std::string locator(std::uint32_t time, std::string_view name, unsigned value) {
  return joined({le32(time), text(name, 16), le16(value), zeros(2)});
}

std::string entry_item(unsigned major, unsigned minor) {
  return chunk("EDLE", entry_body(), major, minor);
}

std::string track_item(unsigned major, unsigned minor) {
  return chunk("TRAK", track_body(), major, minor);
}

std::string pq_header_item(unsigned count) {
  return chunk("PQHC", pq_header_body(count));
}

std::string pq_entry_item() {
  return chunk("PQEC", pq_entry_body());
}

}  // namespace native_test
