#include "tests/adl/writer_scene.h"

namespace adl_test {

void fill_demo(WriterScene& scene) {
  scene.host.app.project_title = u"Demo";
  CGenericEdlEntry& first = scene.add({0, 1100, 5000});
  first.source_timestamp = 172800000;
  first.fade_in_length = first.fade_out_length = 200;
  first.fade_out_curve = 33;
  first.gain_left = 0.5F;
  first.set_source_reel_name(u"Line 1");
  const std::u16string path = u"\\\\server\\share\\b";
  CGenericEdlEntry& second = scene.add({900, 2000, 6900, {0}, path, u"b"});
  second.set_originator_reference(u"ABCDEF");
  second.channel_offset = 1;
  second.fade_in_length = 200;
  second.fade_out_length = 480;
  second.fade_in_curve = 33;
  second.chunk_flags = 1;
  second.set_source_reel_name(u"say \"hi\"");
  CGenericEdlEntry& third = scene.add({48000, 144000, 0, {2, 3}, path, u"b"});
  third.set_originator_reference(u"ABCDEF");
  third.gain_left = 0.0F;
  scene.add_automation(0, 0, {{0, 384}, {48000, 324}});
  scene.add_automation(1, 1, {{0, 0}, {480000, 1}});
  scene.add_automation(2, 0, {{0, 252}, {96000, 254}, {96001, 504}});
}

}  // namespace adl_test
