#include "tests/native/small_edl.h"

#include "tests/native/scene.h"

namespace native_test {

void fill_chunk_small(CGenericEdl& root) {
  CGenericEdlEntry& entry = add_entry(root, 96000, 120000);
  entry.set_source_reel_name(u"Dialogue take 12 B");
  entry.source_in = 48000;
  // Not in the file; comes back as the source in and the length.
  entry.source_out = 1;
  entry.fade_in_curve = 2;
  entry.fade_out_curve = 0;
  entry.fade_in_length = 480;
  entry.fade_out_length = 240;
  entry.set_clip_name(u"TAKE12");
  entry.set_file_path(u"//C:/audio/TAKE12");
  entry.set_reel_name(u"REEL1");
  entry.source_index = 11;
  entry.source_timestamp = 1000;
  entry.set_originator(u"MARLO");
  entry.source_word = 7;
  add_pq_entry(root);
  add_locator(root, 4800, u"Cue 1", 3);
  add_automation(root, 0, 1, {{0, 384}, {96000, 324}});
}

void fill_edl2_small(CGenericEdl& root) {
  CGenericEdlEntry& mono = add_entry(root, 96000, 144000, {0});
  mono.set_source_reel_name(u"Line 1");
  mono.source_in = 49000;
  mono.source_timestamp = 1000;
  mono.set_clip_name(u"take");
  mono.source_channel = 7;
  mono.fade_in_length = 480;
  mono.fade_out_length = 240;
  mono.fade_in_curve = 1;
  mono.fade_out_curve = 9;
  CGenericEdlEntry& stereo = add_entry(root, 192000, 240000, {0, 1});
  stereo.set_source_reel_name(u"Stereo");
  stereo.source_in = 10000;
  stereo.source_timestamp = 0;
  stereo.set_clip_name(u"MUSICBED");
  stereo.fade_in_length = 0;
  stereo.fade_out_length = 0;
  stereo.fade_in_curve = 0;
  stereo.fade_out_curve = 13;
  stereo.gain_left = 0.5F;
  add_pq_entry(root);
}

}  // namespace native_test
