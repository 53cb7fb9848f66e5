#include "aaf/import_essence.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "aaf/aaf_edl_file.h"
#include "aaf/essence_progress.h"
#include "aaf/import_index.h"
#include "aaf/source_paths.h"
#include "host/application.h"
#include "host/folders.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "host/text_format.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

namespace {

constexpr aafUInt32 copy_block = 0x200000;
constexpr std::size_t folder_path_room = 262;
// Paths are kept with this many characters.
constexpr std::size_t path_room = 255;
// The number of a source has 16 bits, the last of which stands for none.
constexpr std::intptr_t most_sources = no_track_index;

// One piece of essence in the file.
struct Item {
  AafRef<IAAFEssenceData> data;
  AafRef<IAAFEssenceDescriptor> descriptor;
  aafLength_t size = 0;
  std::uint8_t media_type = media_unknown;
};

// False when the item does not hold together.
bool read_item(AafRef<IAAFEssenceData> data, Item& item) {
  AafRef<IAAFSourceMob> mob;
  item.data = std::move(data);
  if (item.data->GetSize(&item.size) != 0 || item.data->GetFileMob(mob.put()) != 0 || !mob ||
      mob->GetEssenceDescriptor(item.descriptor.put()) != 0 || !item.descriptor) {
    return false;
  }
  item.media_type = media_type_of(item.descriptor.get());
  return true;
}

// Calls `work` with each item, which ends the walk by answering false. False when the
// file's essence cannot be listed, or an item does not hold together.
template <class Work>
bool for_each_item(IAAFHeader* header, Work work) {
  AafRef<IEnumAAFEssenceData> all;
  if (header->EnumEssenceData(all.put()) != 0) return false;
  for (AafRef<IAAFEssenceData> data; all->NextOne(data.put()) == 0;) {
    Item item;
    if (!read_item(data, item)) return false;
    if (item.media_type != media_unknown && !work(item)) return false;
  }
  return true;
}

// Copies the bytes of an item, and counts the KiB done, each block rounded down.
class Copy {
 public:
  Copy(CEssenceStorageProgressDlg& progress, const std::int32_t& abort)
      : progress_(progress), abort_(abort) {}

  // False when the item cannot be read.
  bool run(const Item& item, CFile& file);
  // The system refused a write.
  [[nodiscard]] bool is_incomplete() const { return incomplete_; }

 private:
  void write(CFile& file, const std::vector<aafUInt8>& bytes, aafUInt32 count);

  CEssenceStorageProgressDlg& progress_;
  const std::int32_t& abort_;
  std::uint32_t kilobytes_ = 0;
  bool incomplete_ = false;
};

// A refused write does not end the import: the audio that is there is worth having.
void Copy::write(CFile& file, const std::vector<aafUInt8>& bytes, aafUInt32 count) {
  try {
    file.Write(bytes.data(), count);
  } catch (const CFileException&) {
    incomplete_ = true;
  }
}

bool Copy::run(const Item& item, CFile& file) {
  if (item.size <= 0) return true;
  std::vector<aafUInt8> bytes(
      static_cast<std::size_t>(std::min<aafLength_t>(item.size, copy_block)));
  const auto block = static_cast<aafUInt32>(bytes.size());
  for (aafPosition_t at = 0; at < item.size && abort_ == 0;) {
    aafUInt32 count = 0;
    if (item.data->SetPosition(at) != 0 || item.data->Read(block, bytes.data(), &count) != 0)
      return false;
    // The stream ends before the size that is said of it.
    if (count == 0) return true;
    write(file, bytes, count);
    at += count;
    kilobytes_ += count / 1024;
    progress_.set_position(kilobytes_);
  }
  return true;
}

void close(CFile& file, bool& incomplete) {
  try {
    file.Close();
  } catch (const CFileException&) {
    incomplete = true;
  }
}

// Tells the host the form of samples that have no head of their own.
void note_raw_audio(const CString& path, IUnknown* descriptor) {
  if (!AAF_QUERY(IAAFPCMDescriptor, descriptor)) return;
  const auto sound = AAF_QUERY(IAAFSoundDescriptor, descriptor);
  RawAudioFormat format;
  aafRational_t rate{};
  if (!sound || sound->GetAudioSamplingRate(&rate) != 0 || rate.numerator <= 0 ||
      rate.denominator <= 0 || sound->GetChannelCount(&format.channels) != 0 ||
      sound->GetQuantizationBits(&format.sample_bits) != 0) {
    return;
  }
  format.sample_rate = static_cast<std::uint32_t>(rate.numerator / rate.denominator);
  host().folders().note_raw_audio(path, format);
}

void refresh_folder_of(const CString& path) {
  const std::u16string_view text = path.view();
  const std::u16string folder(text.substr(0, text.find_last_of(u"/\\") + 1));
  host().folders().refresh(host().folders().find_folder(folder.c_str()));
}

}  // namespace

std::uint8_t media_type_of(IUnknown* descriptor) {
  if (AAF_QUERY(IAAFWAVEDescriptor, descriptor)) return media_wave;
  if (AAF_QUERY(IAAFPCMDescriptor, descriptor)) return media_wave;
  if (AAF_QUERY(IAAFAIFCDescriptor, descriptor)) return media_aifc;
  return media_unknown;
}

std::int64_t read_bext_time_reference(IAAFWAVEDescriptor* descriptor) {
  // Of the image: the first chunk's name, the number in it, and what must be there.
  constexpr std::size_t name_place = 12;
  constexpr std::size_t reference_place = 358;
  constexpr aafUInt32 least_size = 366;
  constexpr aafUInt32 most_size = 0x1000000;
  aafUInt32 size = 0;
  if (descriptor->GetSummaryBufferSize(&size) != 0 || size <= least_size || size > most_size)
    return 0;
  std::vector<aafUInt8> image(size);
  if (descriptor->GetSummary(size, image.data()) != 0) return 0;
  const std::string name(image.begin() + name_place, image.begin() + name_place + 4);
  if (name != "bext" && name != "BEXT") return 0;
  std::uint64_t reference = 0;
  for (std::size_t i = 8; i > 0; --i)
    reference = reference << 8U | image[reference_place + i - 1];
  return static_cast<std::int64_t>(reference);
}

}  // namespace aaf

// All of the file's essence is copied, used or not.
bool CAAFEdlFile::extract_embedded_essence(IAAFHeader* header) {
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  const bool measured = aaf::for_each_item(header, [&](const aaf::Item& item) {
    ++count;
    if (item.size > 0) bytes += static_cast<std::uint64_t>(item.size);
    return true;
  });
  if (!measured) return false;
  std::uint32_t written = 0;
  if (count > 0 && !copy_essence(header, count, bytes, written)) return false;
  if (written > 0)
    host().folders().refresh(host().application().get_imported_audio_folder());
  else
    aaf::refresh_folder_of(m_aaf_path);
  return true;
}

bool CAAFEdlFile::copy_essence(IAAFHeader* header, std::uint32_t count, std::uint64_t bytes,
                               std::uint32_t& written) {
  const auto total = static_cast<std::uint32_t>(bytes / 1024);
  std::int32_t abort = 0;
  CEssenceStorageProgressDlg progress(1, count, total, &abort);
  progress.set_position(0);
  aaf::Copy copy(progress, abort);
  bool incomplete = false;
  const bool copied = aaf::for_each_item(header, [&](const aaf::Item& item) {
    aafMobID_t id{};
    CString path;
    const int kind = item.media_type == aaf::media_aifc ? 1 : 0;
    if (item.data->GetFileMobID(&id) != 0 || !embedded_essence_path(kind, id, path)) return false;
    m_essence_mobs.Add(id);
    m_essence_paths.Add(path);
    CFile file;
    // A file that cannot be made is passed over; its clips point at nothing.
    if (file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive) &&
        abort == 0) {
      progress.set_track_text(written++);
      const bool read = copy.run(item, file);
      aaf::close(file, incomplete);
      if (!read) return false;
      if (abort == 0) aaf::note_raw_audio(path, item.descriptor.get());
    }
    return abort == 0;
  });
  if (incomplete || copy.is_incomplete()) set_output_incomplete(1);
  if (!copied) return false;
  progress.set_position(total);
  progress.close();
  return true;
}

bool CAAFEdlFile::embedded_essence_path(int kind, const _aafMobID_t& id, CString& out) const {
  out.Empty();
  HostFolder* const folder = host().application().get_imported_audio_folder();
  if (folder == nullptr) {
    host().message_boxes().message(host().strings().load(string_id::aaf_no_audio_folder),
                                   BoxIcon::information, BoxButtons::ok);
    return false;
  }
  wide_char path[aaf::folder_path_room] = {};
  host().folders().local_path(folder, path, aaf::folder_path_room);
  const std::u16string name = decimal(id.material.Data1) + u"_" + decimal(id.material.Data2) +
                              u"_" + decimal(id.material.Data3) + (kind == 0 ? u".wav" : u".afc");
  out = std::u16string(field_text(path)) + name;
  return true;
}

int CAAFEdlFile::find_or_add_source(std::u16string_view path, std::uint8_t media_type) {
  std::u16string canonical = aaf::resolve_local_path(path, m_aaf_path.view());
  // Looked for in the length in which it is kept, or each clip would make a source.
  if (canonical.size() > aaf::path_room) canonical.resize(aaf::path_room);
  aaf::ImportIndex& index = import_index();
  if (const int known = index.find_source(canonical); known >= 0) return known;
  const std::intptr_t number = m_sources.GetCount();
  if (number >= aaf::most_sources) return -1;
  auto* const track = new CGenericEDLFileTrack;
  m_sources.AddTail(track);
  track->m_index = static_cast<std::uint16_t>(number);
  const std::size_t extension = path.size() < 3 ? 0 : path.size() - 3;
  track->m_source_type = aaf::file_type_code(path.substr(extension), media_type);
  track->m_no_channels = 1;
  track->set_path(canonical);
  track->set_file_name(aaf::file_name_of(path, true));
  index.add_source(canonical, track->m_index);
  return track->m_index;
}
