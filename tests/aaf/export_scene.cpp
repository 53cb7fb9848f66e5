#include "tests/aaf/export_scene.h"

#include "aaf/aaf_dll.h"
#include "core/edl_details.h"

namespace aaf_test {

namespace {

std::u16string number_text(std::size_t number) {
  return text_from_utf8(std::to_string(number));
}

}  // namespace

ExportScene::ExportScene(std::uint8_t sample_rate_index, std::uint8_t frame_rate) {
  host.libraries.redirected["libAAFCOAPI.so"] = EDL_AAF_LIBRARY;
  host.browser.report_folder = reports.path();
  host.fixes.set_all();
  host.app.set_straight_curve(0);
  host.app.curve_count = 1;
  host.app.aaf_embed_audio = 1;
  EDL_DETAILS details;
  details.sample_rate_index = sample_rate_index;
  details.frame_rate = frame_rate;
  list.set_edl_details(&details);
}

ExportScene::~ExportScene() {
  static_cast<void>(unload_aaf_library());
}

support::FakeAudCnt& ExportScene::add_audio(std::uint32_t channels, std::size_t samples,
                                            std::uint32_t bits) {
  std::vector<std::vector<std::int32_t>> all(channels);
  for (std::uint32_t channel = 0; channel < channels; ++channel) {
    for (std::size_t i = 0; i < samples; ++i) {
      const auto word = static_cast<std::uint32_t>(i * 0x10101 + channel * 0x50505 + audio.size());
      all[channel].push_back(static_cast<std::int32_t>(word << 8) >> 8);
    }
  }
  const std::uint32_t rate = samples_per_second(list.sample_rate_index());
  audio.push_back(std::make_unique<support::FakeAudCnt>(rate, bits, std::move(all)));
  return *audio.back();
}

CGenericEdlEntry& ExportScene::add(const Edit& edit, support::FakeAudCnt* content) {
  auto* const entry = new CGenericEdlEntry(&list);
  list.get_generic_entry_list()->AddTail(entry);
  entry->dest_in = edit.in;
  entry->dest_out = edit.out;
  entry->source_in = edit.source_in;
  entry->source_out = edit.source_in + edit.out - edit.in;
  entry->fade_in_length = edit.fade_in;
  entry->fade_out_length = edit.fade_out;
  entry->fade_in_curve = 0;
  entry->fade_out_curve = 0;
  entry->gain_left = edit.level;
  entry->set_no_streams(edit.streams);
  for (std::uint16_t i = 0; i < edit.streams; ++i)
    entry->set_stream(i, static_cast<std::uint16_t>(edit.stream + i));
  entry->channel_offset = edit.channel_offset;
  entry->no_channels = static_cast<std::uint16_t>(edit.channel_offset + edit.streams);
  std::size_t number = 0;
  while (number < audio.size() && audio[number].get() != content)
    ++number;
  const std::u16string name = u"take " + number_text(number);
  entry->set_clip_name(name.c_str());
  entry->set_file_path((u"//D:/audio/" + name).c_str());
  entry->audio_content = content;
  return *entry;
}

CGenericEdlEntry& ExportScene::add(const Edit& edit) {
  if (common_ == nullptr) common_ = &add_audio(1, 10);
  return add(edit, common_);
}

void ExportScene::add_automation(std::uint16_t type, std::uint16_t channel,
                                 const std::vector<std::pair<std::int64_t, std::int64_t>>& points) {
  auto* const chunk = new CGenericAutomationChunk;
  list.get_automation_list()->AddTail(chunk);
  chunk->type = type;
  chunk->channel = channel;
  chunk->points = new CObList(10);
  chunk->no_points = static_cast<std::uint32_t>(points.size());
  for (const auto& [time, value] : points) {
    auto* const point = new CGenericAutomationEntry;
    chunk->points->AddTail(point);
    point->time = time;
    point->value = value;
  }
}

void ExportScene::add_locator(std::u16string_view name, std::int64_t time) {
  auto* const locator = new CGenericLocatorEntry;
  list.get_locator_list()->AddTail(locator);
  locator->name = CString(name);
  locator->time = time;
}

std::unique_ptr<CAAFEdlFile> ExportScene::exporter() {
  auto edl = std::make_unique<CAAFEdlFile>(&list, 0);
  EDL_DETAILS details;
  list.get_edl_details(&details);
  edl->set_edl_details(&details);
  return edl;
}

result_code ExportScene::run(std::string_view name, int flag) {
  return exporter()->export_edl(folder.wide_file(name), flag);
}

}  // namespace aaf_test
