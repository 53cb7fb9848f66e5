// An edit list with audio of its own that is exported to an AAF file under a scripted
// host, and what the file then holds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "aaf/aaf_edl_file.h"
#include "core/generic_automation.h"
#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace aaf_test {

// What differs from an edit of one stream without fades.
struct Edit {
  std::int64_t in = 0;
  std::int64_t out = 0;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  std::int64_t source_in = 0;
  float level = 1.0F;
  std::uint16_t stream = 0;
  std::uint16_t streams = 1;
  std::uint16_t channel_offset = 0;
};

class ExportScene {
 public:
  // 48000 samples, 25 frames a second; all corrections on; curve 0 falls evenly; no
  // levels and no automation; audio embedded as WAVE.
  explicit ExportScene(std::uint8_t sample_rate_index = 2, std::uint8_t frame_rate = 1);
  ~ExportScene();

  // Audio of so many channels, each sample a number of its own.
  support::FakeAudCnt& add_audio(std::uint32_t channels, std::size_t samples,
                                 std::uint32_t bits = 24);
  // An edit of a source: `audio` may be null. Edits of one audio have one source.
  CGenericEdlEntry& add(const Edit& edit, support::FakeAudCnt* audio);
  // Of a mono audio that is made with the first such edit.
  CGenericEdlEntry& add(const Edit& edit);
  void add_automation(std::uint16_t type, std::uint16_t channel,
                      const std::vector<std::pair<std::int64_t, std::int64_t>>& points);
  void add_locator(std::u16string_view name, std::int64_t time);

  // Exports to that name in the folder.
  result_code run(std::string_view name = "x.aaf", int flag = 0);
  // What an export answers that is not made by this scene's own object.
  [[nodiscard]] std::unique_ptr<CAAFEdlFile> exporter();

  [[nodiscard]] std::string path(std::string_view name = "x.aaf") const {
    return folder.file(name);
  }
  [[nodiscard]] bool exists(std::string_view name = "x.aaf") const {
    return support::file_exists(path(name));
  }

  support::TempFolder folder;
  support::TempFolder reports;
  support::ScriptedHost host;
  CGenericEdl list;
  std::vector<std::unique_ptr<support::FakeAudCnt>> audio;

 private:
  support::FakeAudCnt* common_ = nullptr;
};

// Opened through the object library.
class ReadFile {
 public:
  explicit ReadFile(const std::string& path);
  ~ReadFile();
  ReadFile(const ReadFile&) = delete;
  ReadFile& operator=(const ReadFile&) = delete;

  [[nodiscard]] IAAFHeader* header() const { return m_header.get(); }
  // The names of the mobs of a kind, sorted.
  [[nodiscard]] std::vector<std::string> mob_names(aafMobKind_t kind) const;
  [[nodiscard]] AafRef<IAAFMob> mob(std::string_view name) const;
  [[nodiscard]] AafRef<IAAFMob> composition() const;
  [[nodiscard]] std::string name_of(const aafMobID_t& id) const;

  struct Slot {
    aafSlotID_t id = 0;
    std::string name;
    aafUInt32 physical = 0;
    aafRational_t rate{};
    AafRef<IAAFSegment> segment;
    AafRef<IAAFTimelineMobSlot> slot;
  };
  // Of the composition, in its order.
  [[nodiscard]] std::vector<Slot> slots() const;

  // The components of a track, one to an element:
  //   filler 1200
  //   clip 5000 from 77 of take
  //   gain 5000 500000/1000000 (clip 5000 from 77 of take)
  //   gain 5000 [0/5000 1/1] (…)
  //   dissolve 200 cut 100, two-level dissolve 100 cut 50
  // A pan group is passed through; pan() tells it.
  [[nodiscard]] std::vector<std::string> track(std::size_t slot) const;
  // The control points of the parameters of a transition of a track, from 0, by parameter:
  // "level [0/100 0/1000000 …]".
  [[nodiscard]] std::vector<std::string> levels(std::size_t slot, std::size_t transition) const;
  // "1800 [0/5 1/2]" of a slot whose segment is a pan group; empty without one.
  [[nodiscard]] std::string pan(std::size_t slot) const;
  // The length of a slot's segment.
  [[nodiscard]] aafLength_t length(std::size_t slot) const;
  // A mark of a slot by the second number of its identifier; -1 without it.
  [[nodiscard]] std::int64_t mark(std::size_t slot, aafUInt16 number) const;

  // The bytes of the embedded essence of a master mob, head and all; and the path of the
  // external file that its locator names, as it stands.
  [[nodiscard]] std::string essence(std::string_view master) const;
  [[nodiscard]] std::string locator(std::string_view master) const;
  [[nodiscard]] AafRef<IAAFEssenceDescriptor> descriptor(std::string_view master) const;

 private:
  [[nodiscard]] AafRef<IAAFMob> file_mob(std::string_view master) const;
  [[nodiscard]] AafRef<IAAFSequence> sequence(std::size_t slot) const;
  [[nodiscard]] std::string text_of(IUnknown* component) const;
  [[nodiscard]] std::string group_text(IAAFOperationGroup& group, aafLength_t length) const;

  AafRef<IAAFFile> m_file;
  AafRef<IAAFHeader> m_header;
};

// The control points of a parameter in brackets, or its constant.
std::string parameter_text(IUnknown* parameter);

}  // namespace aaf_test
