#include "tests/aaf/import_fixture.h"

#include "aaf/aaf_dll.h"
#include "core/generic_automation.h"
#include "core/generic_locator_entry.h"

std::ostream& operator<<(std::ostream& out, const Edit& edit) {
  return out << "stream " << edit.stream << " in " << edit.in << " length " << edit.length
             << " source " << edit.source << " fades " << edit.fade_in << "/" << edit.fade_out;
}

std::ostream& operator<<(std::ostream& out, const Chunk& chunk) {
  out << "parameter " << chunk.parameter << " channel " << chunk.channel << ":";
  for (const auto& [time, value] : chunk.points)
    out << " " << time << "=" << value;
  return out;
}

namespace {

// Ends that lie beyond all numbers wrap.
std::int64_t span(std::int64_t in, std::int64_t out) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(out) -
                                   static_cast<std::uint64_t>(in));
}

}  // namespace

AafImportTest::AafImportTest() : audio_folder(host.places.add(folder.folder("imp"))) {
  host.libraries.redirected["libAAFCOAPI.so"] = EDL_AAF_LIBRARY;
  host.browser.report_folder = folder.path();
  host.app.imported_audio_folder = audio_folder;
  host.app.curve_count = 1;
  host.app.set_straight_curve(0);
  importer = std::make_unique<CAAFEdlFile>(&edl);
}

AafImportTest::~AafImportTest() {
  builder_.reset();
  importer.reset();
  EXPECT_EQ(host.windows.waits, 0);
  for (const auto& window : host.windows.windows)
    EXPECT_TRUE(window->closed);
  EXPECT_EQ(unload_aaf_library(), 0);
  EXPECT_EQ(host.libraries.still_loaded, 0);
}

support::AafBuilder& AafImportTest::file() {
  if (!builder_) builder_ = std::make_unique<support::AafBuilder>(path, product);
  return *builder_;
}

support::AafTake AafImportTest::take() {
  return file().source({.locators = {L"file:///C:/audio/take.wav"}});
}

result_code AafImportTest::import(std::vector<support::AafSlot> slots) {
  return import_composition({.slots = std::move(slots)});
}

result_code AafImportTest::import_composition(const support::AafComposition& composition) {
  file().composition(composition);
  return import();
}

result_code AafImportTest::import() {
  file().save();
  builder_.reset();
  return import_path(path);
}

result_code AafImportTest::import_path(const std::string& from) {
  return importer->import_edl(text_from_utf8(from).c_str());
}

std::vector<CGenericEdlEntry*> AafImportTest::entries() const {
  std::vector<CGenericEdlEntry*> found;
  for (POSITION at = edl.get_generic_entry_list()->GetHeadPosition(); at != nullptr;)
    found.push_back(static_cast<CGenericEdlEntry*>(edl.get_generic_entry_list()->GetNext(at)));
  return found;
}

std::vector<Edit> AafImportTest::edits() const {
  std::vector<Edit> found;
  for (const CGenericEdlEntry* const entry : entries()) {
    EXPECT_EQ(span(entry->source_in, entry->source_out), span(entry->dest_in, entry->dest_out));
    EXPECT_EQ(entry->no_streams, 1);
    found.push_back({.stream = entry->get_stream(0),
                     .in = entry->dest_in,
                     .length = span(entry->dest_in, entry->dest_out),
                     .source = entry->source_in,
                     .fade_in = entry->fade_in_length,
                     .fade_out = entry->fade_out_length});
  }
  return found;
}

std::vector<float> AafImportTest::levels() const {
  std::vector<float> found;
  for (const CGenericEdlEntry* const entry : entries())
    found.push_back(entry->gain_left);
  return found;
}

std::vector<std::string> AafImportTest::paths() const {
  std::vector<std::string> found;
  for (const CGenericEdlEntry* const entry : entries())
    found.push_back(support::utf8(entry->file_path));
  return found;
}

std::vector<Chunk> AafImportTest::automation() const {
  std::vector<Chunk> found;
  const CObList& chunks = *edl.get_automation_list();
  for (POSITION at = chunks.GetHeadPosition(); at != nullptr;) {
    const auto* const chunk = static_cast<CGenericAutomationChunk*>(chunks.GetNext(at));
    Chunk run{.parameter = chunk->type, .channel = chunk->channel};
    for (POSITION place = chunk->points->GetHeadPosition(); place != nullptr;) {
      const auto* const one = static_cast<CGenericAutomationEntry*>(chunk->points->GetNext(place));
      run.points.emplace_back(one->time, one->value);
    }
    EXPECT_EQ(chunk->no_points, run.points.size());
    found.push_back(std::move(run));
  }
  return found;
}

std::vector<std::string> AafImportTest::locators() const {
  std::vector<std::string> found;
  const CObList& list = *edl.get_locator_list();
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    const auto* const one = static_cast<CGenericLocatorEntry*>(list.GetNext(at));
    EXPECT_EQ(one->locator_value, 0);
    found.push_back(support::utf8(one->name.view()) + " " + std::to_string(one->time));
  }
  return found;
}

std::vector<std::string> AafImportTest::boxes() const {
  std::vector<std::string> found;
  for (const support::BoxRecord& box : host.boxes.shown) {
    found.push_back(box.kind == support::BoxRecord::Kind::question
                        ? std::to_string(box.title_id) + "/" + std::to_string(box.text_id)
                        : box.body);
  }
  return found;
}

std::string AafImportTest::report() const {
  const std::string bytes = support::read_file(folder.file("AAFImportlog_x.htm"));
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                  (static_cast<unsigned char>(bytes[i + 1]) << 8U));
  }
  return support::utf8(text);
}

std::string AafImportTest::beside(const std::string& name) const {
  return "/" + folder.file(name);
}
