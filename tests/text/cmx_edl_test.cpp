#include "text/cmx_edl.h"

#include <gtest/gtest.h>

#include "core/generic_edl_entry.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

TEST(CmxSmoke, RoundTrip) {
  const support::ScriptedHost host;
  CGenericEdl root;
  EDL_DETAILS d;
  d.frame_rate = 1;
  d.sample_rate_index = 2;
  root.set_edl_details(&d);
  auto* x = new CGenericEdlEntry(&root);
  x->event_number = 1;
  x->set_reel_name(u"TAPE01");
  x->set_no_streams(1);
  x->set_stream(0, 0);
  x->source_in = 172800000;
  x->source_out = 173280000;
  x->dest_in = 1728000000;
  x->dest_out = 1728480000;
  x->fade_in_length = 46080;
  x->fade_out_length = 23040;
  root.get_generic_entry_list()->AddTail(x);
  {
    CCMXEdl out(4, &root, 0);
    EXPECT_EQ(out.export_edl(u"/tmp/b.edl", 0), 101);
  }
  CCMXEdl in(4, nullptr, 0);
  in.set_edl_details(&d);
  EXPECT_EQ(in.import_edl(u"/tmp/b.edl"), 100);
  ASSERT_EQ(in.get_generic_entry_list()->GetCount(), 1);
  auto* e = static_cast<CGenericEdlEntry*>(in.get_generic_entry_list()->GetHead());
  EXPECT_EQ(e->source_out, 173280000);
  EXPECT_EQ(e->fade_in_length, 46080);
  EXPECT_EQ(e->fade_out_length, 23040);
}

}  // namespace
