// Words are little-endian, texts 8-bit in the host's code page, and times the low 32
// bits of a sample count. Offsets stand at each field; reading and writing run in
// the order of the file.
#include "native/edl2_records.h"

#include <algorithm>
#include <string_view>

#include "core/generic_edl_entry.h"
#include "core/generic_pq_entry.h"
#include "core/sample_math.h"
#include "host/code_page.h"
#include "host/text.h"
#include "host/text_format.h"
#include "native/fade_curve_names_table.h"
#include "native/wire_bytes.h"

namespace native {

namespace {

constexpr std::uint32_t head_magic = 0x91922135;
constexpr std::string_view head_banner = "Marlo(tm) EDL2(c) 2008 Lomond Tone Products Ltd        ";
constexpr std::size_t banner_size = 60;
constexpr std::uint32_t head_format_mark = 0x30000;

constexpr std::uint32_t event_record_type = 0;
constexpr std::uint32_t pq_record_type = 1;
constexpr std::uint32_t no_word = 0xFFFFFFFF;
constexpr std::uint32_t curve_word = 128;

// The name of an event: 15 bytes are written, and read up to 32.
constexpr std::size_t event_name_size = 15;
constexpr std::size_t event_name_read = 32;
constexpr std::size_t curve_name_size = fade_curve_name_length + 1;

// The source name: a clip name of 8, "AD", a letter and a NUL.
constexpr std::size_t clip_name_size = 8;
constexpr std::size_t source_name_size = 12;
constexpr std::size_t source_letter_at = 10;

constexpr std::size_t pq_text_size = 16;
constexpr std::size_t isrc_size = 12;
constexpr std::size_t pq_third_text_size = 32;

template <std::size_t places>
void decode_field(std::string_view bytes, wide_char (&field)[places]) {
  decode_text(bytes, field, places, places - 1);
}

std::string_view without_blanks_behind(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool is_digit_byte(char c) {
  return c >= '0' && c <= '9';
}

// Two digits that end the clip name, other than two zeros, are the channel within
// the source.
void read_clip_name(std::string_view places, Edl2Event& event) {
  const std::string_view name = without_blanks_behind(places);
  decode_field(name, event.clip_name);
  if (name.size() < 2) return;
  const std::string_view digits = name.substr(name.size() - 2);
  if (!is_digit_byte(digits[0]) || !is_digit_byte(digits[1]) || digits == "00") return;
  event.source_channel = static_cast<std::uint32_t>((digits[0] - '0') * 10 + (digits[1] - '0'));
  decode_field(name.substr(0, name.size() - 2), event.clip_name);
}

// The first eight places of the source name. A channel goes to the first blank when
// the last two places are free; of a longer number what is left of two places
// behind its start is blanked again, but for one that begins at the seventh place.
std::u16string clip_places(const CGenericEdlEntry& entry) {
  std::u16string name(field_text(entry.clip_name).substr(0, clip_name_size));
  name.resize(clip_name_size, u' ');
  std::transform(name.begin(), name.end(), name.begin(), upper_case);
  if (entry.source_channel == 0 || !is_white_space(name[6]) || !is_white_space(name[7])) {
    return name;
  }
  const auto blank = std::find_if(name.begin(), name.end(), is_white_space);
  const auto at = static_cast<std::size_t>(blank - name.begin());
  const std::u16string digits = decimal(static_cast<std::int32_t>(entry.source_channel), 2);
  name.replace(at, std::min<std::size_t>(2, digits.size()), digits, 0, 2);
  if (at < 6) std::fill(name.begin() + static_cast<std::ptrdiff_t>(at) + 2, name.end(), u' ');
  return name;
}

char letter_of(Edl2Layout layout) {
  switch (layout) {
    case edl2_mono:
      return 'M';
    case edl2_left:
      return 'L';
    case edl2_right:
      return 'R';
    default:
      return ' ';
  }
}

void write_source_name(WireOut& out, const CGenericEdlEntry& entry, Edl2Layout layout) {
  char* const places = out.at();
  out.fill(clip_name_size, ' ');
  const std::string name = bytes_from_text(clip_places(entry));
  std::copy_n(name.data(), std::min(name.size(), clip_name_size), places);
  out.bytes("AD");
  out.u8(static_cast<unsigned char>(letter_of(layout)));
  out.u8(0);
}

void write_curve(WireOut& out, std::uint16_t curve) {
  const std::string_view name = fade_curve_name(curve);
  out.bytes(name);
  out.fill(fade_curve_name_length - name.size(), ' ');
  out.u8(0);
  out.u32(curve_word);
}

// Start and end of both fades in the source's own time. All sums wrap in 32 bits.
void write_fades(WireOut& out, const CGenericEdlEntry& entry) {
  const std::int64_t stamp = entry.source_timestamp == time_not_given ? 0 : entry.source_timestamp;
  const std::int64_t fade_in_start = minus(entry.source_in, stamp);
  const std::int64_t fade_out_end = plus(fade_in_start, minus(entry.dest_out, entry.dest_in));
  out.low32(fade_in_start);
  out.low32(plus(fade_in_start, entry.fade_in_length));
  out.low32(minus(fade_out_end, entry.fade_out_length));
  out.low32(fade_out_end);
}

CString text_of(std::string_view field) {
  return text_from_bytes(until_nul(field));
}

}  // namespace

bool read_edl2_head(const char* bytes, Edl2Head& head) {
  WireIn in(bytes);
  if (in.u32() != head_magic) return false;  // 0
  in.skip(192);
  head.sample_rate_hz = in.u16();  // 196
  head.bit_depth = in.u16();       // 198
  in.skip(6);
  head.frame_rate = in.u16();  // 206
  in.skip(112);
  head.extension_offset = in.u32();  // 320
  in.skip(68);
  head.channel_count = in.u16();                  // 392
  for (std::uint32_t& count : head.event_counts)  // 394
    count = in.u32();
  head.pq_count = in.u32();  // 426
  return true;
}

void write_edl2_head(char* record, const Edl2Head& head) {
  WireOut out(record);
  out.u32(head_magic);     // 0
  out.bytes(head_banner);  // 4
  out.fill(banner_size - head_banner.size());
  out.u32(head_format_mark);  // 64
  out.fill(128);
  out.u16(head.sample_rate_hz);  // 196
  out.u16(head.bit_depth);       // 198
  out.fill(6);
  out.u16(head.frame_rate);  // 206
  out.fill(112);
  out.u32(head.extension_offset);  // 320
  out.fill(68, 0xFF);
  out.u16(head.channel_count);                         // 392
  for (const std::uint32_t count : head.event_counts)  // 394
    out.u32(count);
  out.u32(head.pq_count);  // 426
}

Edl2Event read_edl2_event(const char* bytes) {
  WireIn in(bytes);
  Edl2Event event;
  event.dest_in = in.u32();   // 0
  event.dest_out = in.u32();  // 4
  in.skip(8);
  decode_field({in.at(), event_name_read}, event.name);  // 16
  in.skip(event_name_size);
  event.layout = in.u8();  // 31
  in.skip(4);
  const std::string_view source_name = in.bytes(source_name_size);  // 36
  const std::string_view places = source_name.substr(0, clip_name_size);
  read_clip_name(places, event);
  event.file_path[0] = u'/';
  decode_text(places, event.file_path + 1, clip_name_size + 1, clip_name_size);
  event.letter = source_name[source_letter_at];
  in.skip(4);
  event.fade_in_start = in.u32();                                             // 52
  event.fade_in_end = in.u32();                                               // 56
  event.fade_out_start = in.u32();                                            // 60
  event.fade_out_end = in.u32();                                              // 64
  event.fade_in_curve = fade_curve_of(until_nul(in.bytes(curve_name_size)));  // 68
  in.skip(4);
  event.fade_out_curve = fade_curve_of(until_nul(in.bytes(curve_name_size)));  // 80
  in.skip(24);
  event.level = in.f32();  // 112
  return event;
}

Edl2Layout edl2_layout(const CGenericEdlEntry& entry, unsigned channel) {
  if (entry.no_channels == 1) return edl2_mono;
  if (entry.no_channels != 2) return edl2_other;
  const bool second_of_two = entry.no_streams == 2 && channel % 2 == 1;
  return entry.channel_offset + (second_of_two ? 1 : 0) != 0 ? edl2_right : edl2_left;
}

void write_edl2_event(char* record, const CGenericEdlEntry& entry, Edl2Layout layout) {
  WireOut out(record);
  out.low32(entry.dest_in);                                                                  // 0
  out.low32(entry.dest_out);                                                                 // 4
  out.u32(edl2_record_size);                                                                 // 8
  out.u32(event_record_type);                                                                // 12
  out.text(field_text(entry.source_reel_name).substr(0, event_name_size), event_name_size);  // 16
  out.u8(layout);                                                                            // 31
  out.low32(entry.dest_length);                                                              // 32
  write_source_name(out, entry, layout);                                                     // 36
  out.u32(0);                                                                                // 48
  write_fades(out, entry);                                                                   // 52
  write_curve(out, entry.fade_in_curve);                                                     // 68
  write_curve(out, entry.fade_out_curve);                                                    // 80
  out.u8(0);                                                                                 // 92
  out.u8(entry.fade_out_shape);                                                              // 93
  out.u8(entry.fade_in_shape);                                                               // 94
  out.u8(0);                                                                                 // 95
  out.f32(layout == edl2_right ? 0.0F : 1.0F);                                               // 96
  out.f32(layout == edl2_right ? 1.0F : 0.0F);                                               // 100
  out.u32(0x10000);                                                                          // 104
  out.u32(no_word);                                                                          // 108
  out.f32(entry.gain_left);                                                                  // 112
  out.u32(no_word);                                                                          // 116
  out.u16(0xFFFF);                                                                           // 120
  out.fill(6);                                                                               // 122
}

bool read_edl2_pq(const char* bytes, CGenericPQEntry& entry) {
  WireIn in(bytes);
  const std::uint32_t position = in.u32();  // 0
  in.skip(8);
  if (in.u32() != pq_record_type) return false;  // 12
  entry.position_a = entry.position_b = position;
  entry.track_number = in.u16();                             // 16
  entry.index_number = in.u16();                             // 18
  entry.first_text = text_of(in.bytes(pq_text_size));        // 20
  entry.second_text = text_of(in.bytes(pq_text_size));       // 36
  entry.flag_a = in.u8();                                    // 52
  entry.flag_b = in.u8();                                    // 53
  entry.isrc = text_of(in.bytes(isrc_size));                 // 54
  entry.third_text = text_of(in.bytes(pq_third_text_size));  // 66
  return true;
}

void write_edl2_pq(char* record, const CGenericPQEntry& entry) {
  WireOut out(record);
  out.low32(entry.position_a);                          // 0
  out.low32(entry.position_a);                          // 4
  out.u32(edl2_record_size);                            // 8
  out.u32(pq_record_type);                              // 12
  out.u16(entry.track_number);                          // 16
  out.u16(entry.index_number);                          // 18
  out.text(entry.first_text.view(), pq_text_size - 1);  // 20
  out.u8(0);
  out.text(entry.second_text.view(), pq_text_size - 1);  // 36
  out.u8(0);
  out.u8(entry.flag_a != 0 ? 1 : 0);                          // 52
  out.u8(entry.flag_b != 0 ? 1 : 0);                          // 53
  out.text(entry.isrc.view(), isrc_size);                     // 54
  out.text(entry.third_text.view(), pq_third_text_size - 1);  // 66
  out.u8(0);
  out.fill(30);  // 98
}

}  // namespace native
