// Advanced Authoring Format files.
//
// Either direction goes through records of the native formats, in lists of this class's
// own; an import that does not succeed leaves the generic lists as they were. The AAF
// object library is loaded by name at the first call (aaf/aaf_dll.h).
//
// docs/formats/aaf.md tells what is read of a file, and what is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "aaf/aaf_logger.h"
#include "aaf/aaf_ref.h"
#include "aaf/import_limits.h"
#include "core/generic_edl.h"
#include "host/framework/collections.h"
#include "host/framework/ob_list.h"

class AudioFile;
class CAAFExportAudioPacket;
class CAudCnt;
class CEssenceStorageProgressDlg;
class CGenericEDLFileEntry;
class CGenericEDLFileTrack;

namespace aaf {
class EssenceExport;
class ExternalAudio;
class ImportIndex;
}  // namespace aaf

class EDL_API CAAFEdlFile : public CGenericEdl {
 public:
  explicit CAAFEdlFile(CGenericEdl* parent = nullptr, int interactive = 0);
  ~CAAFEdlFile() override;

  // 100: the file was read, also when it holds no composition (which a box tells). 11: it
  // was not: no AAF file, no mobs, a composition that does not hold together, essence
  // that could not be copied, or the person cancelled. The generic lists are then as they
  // were; audio that was copied out of the file stays. The report is written in any case.
  //
  // Once for each object.
  [[nodiscard]] result_code import_edl(const wide_char* path) override;
  // 101: written. 0: not, and a box says why where there is something to say. A name that
  // ends in ".edl" gets ".aaf" in its place. `option` is not used.
  //
  // A file of that name is deleted first, and what was begun is deleted on failure; both
  // by the name given, so a ".edl" name leaves the failed ".aaf" behind.
  //
  // Once for each object.
  [[nodiscard]] result_code export_edl(const wide_char* path, int option) override;

  // Before an import. A file that asks for more is not read.
  void set_import_limits(const AafImportLimits& limits) { m_import_limits = limits; }
  // After an import: the compositions that could be chosen, in the order of the dialog,
  // and which of them was; -1 for none. The report tells who made the file; null before.
  [[nodiscard]] const CStringArray& composition_names() const { return m_composition_names; }
  [[nodiscard]] std::int32_t composition() const { return m_composition; }
  [[nodiscard]] const CAAFLogger* report() const { return m_logger.get(); }

 private:
  friend class CAAFCompMob;
  friend class aaf::EssenceExport;

  // Import.
  [[nodiscard]] bool open_and_read(const wide_char* path);
  [[nodiscard]] bool read_open_file(IAAFFile& file);
  void read_identification(IAAFHeader* header);
  [[nodiscard]] bool is_edit_protocol(IAAFHeader* header) const;
  [[nodiscard]] bool import_composition(IAAFHeader* header);
  [[nodiscard]] bool find_candidate_compositions(IAAFHeader* header, CStringArray& names,
                                                 CArray<_aafMobID_t>& mobs) const;
  [[nodiscard]] bool has_top_level_usage(IAAFDictionary* dictionary, IUnknown* source) const;
  [[nodiscard]] bool has_timecode_slot(IAAFMob* mob) const;
  [[nodiscard]] bool read_mob_identity(IUnknown* source, CString& name, _aafMobID_t& id) const;
  [[nodiscard]] bool extract_embedded_essence(IAAFHeader* header);
  [[nodiscard]] bool copy_essence(IAAFHeader* header, std::uint32_t count, std::uint64_t bytes,
                                  std::uint32_t& written);
  [[nodiscard]] bool embedded_essence_path(int kind, const _aafMobID_t& id, CString& out) const;
  // The number of a source, made when there is none; -1 when there are too many.
  [[nodiscard]] int find_or_add_source(std::u16string_view path, std::uint8_t media_type);
  void rescale_video_entries();
  void transfer_entries();
  void transfer_automation();
  void transfer_locators();
  [[nodiscard]] aaf::ImportIndex& import_index();

  // Either.
  void finish_logger();
  // Samples a second of this list, 0 when no rate is known.
  [[nodiscard]] std::uint32_t sample_rate() const;

  // Export.
  void begin_export_log();
  [[nodiscard]] bool write_open_file(IAAFFile& file);
  [[nodiscard]] bool write_content(IAAFHeader* header);
  [[nodiscard]] bool collect_export_entries();
  void collect_export_automation();
  void collect_export_locators();
  [[nodiscard]] bool register_aaf_plugins() const;
  [[nodiscard]] bool check_exportable() const;
  [[nodiscard]] bool find_bad_overlap(const CGenericEDLFileEntry*& first,
                                      const CGenericEDLFileEntry*& second) const;
  [[nodiscard]] bool sample_rate_is_exportable() const;
  [[nodiscard]] bool sources_are_uniform() const;
  [[nodiscard]] std::u16string format_overlap_message(const CGenericEDLFileEntry& a,
                                                      const CGenericEDLFileEntry& b) const;
  [[nodiscard]] std::u16string format_sample_time(std::int64_t samples) const;
  bool store_operational_pattern(IAAFHeader* header) const;
  void read_back_identification(IAAFHeader* header);
  [[nodiscard]] bool export_essence(IAAFHeader* header);
  void request_packet(AudioFile* audio, std::uint32_t index);
  static void on_waveform_packet(std::int32_t* samples, void* packet, int error);
  void store_packet(int error, CAAFExportAudioPacket* packet);
  [[nodiscard]] bool write_packet(const CAAFExportAudioPacket& packet);
  void cancel_export();
  [[nodiscard]] bool write_next_packet(CAAFExportAudioPacket* packet);
  void write_pending_packets();
  void keep_for_later(CAAFExportAudioPacket& packet);
  // Deletes what is left of the channel's packets.
  void drop_packets();

  // CGenericEDLFileTrack objects; on import numbered from 0 in order.
  CObList m_sources{10};
  // CGenericEDLFileEntry objects; on import in the order of their starts.
  CObList m_events{10};
  // CGenericEDLFileAutomationEntryChunk objects, one for a parameter of a stream.
  CObList m_automation{10};
  // CGenericEDLFileLocatorEntryChunk objects; at most one on import.
  CObList m_locator_groups{10};
  std::unique_ptr<CAAFLogger> m_logger;
  // Export: packets that came too early, CAAFExportAudioPacket objects.
  CObList m_pending_packets{10};
  CString m_aaf_path;
  // Import: local files of essence that lay in the file, and the file mob of each.
  // Export: m_essence_mobs alone, with the master mob of each channel.
  CStringArray m_essence_paths;
  CArray<_aafMobID_t> m_essence_mobs;
  // Nonzero: of a maker whose source times count from the start of the file.
  std::int32_t m_foreign_tool = 0;

  // Export.
  aafUID_t m_codec_id{};
  std::uint32_t m_sample_bits = 0;
  AafRef<IAAFEssenceAccess> m_essence_access;
  std::int32_t m_channel_done = 0;
  std::int32_t m_cancelled = 0;
  // Channels of all sources.
  std::uint32_t m_total_tracks = 0;
  std::uint32_t m_next_packet = 0;
  // Of the channel in hand.
  std::uint32_t m_channel_samples = 0;
  std::uint32_t m_packet_count = 0;
  // Requests that the host has not answered yet.
  std::uint32_t m_open_requests = 0;
  std::uint32_t m_total_kilobytes = 0;
  std::uint32_t m_done_kilobytes = 0;
  std::uint32_t m_tracks_done = 0;
  std::int32_t m_abort_requested = 0;
  std::unique_ptr<CEssenceStorageProgressDlg> m_progress;
  std::vector<std::uint8_t> m_sample_buffer;
  // While an export runs that writes its audio beside the file, or would.
  std::unique_ptr<aaf::ExternalAudio> m_external_audio;

  AafImportLimits m_import_limits;
  std::unique_ptr<aaf::ImportIndex> m_import_index;
  CStringArray m_composition_names;
  std::int32_t m_composition = -1;
};
