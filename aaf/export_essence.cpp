// Makes the master mobs of an export, one for each channel of each source, and copies
// their audio into the AAF file or beside it.
#include <limits>
#include <new>

#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_text.h"
#include "aaf/essence_progress.h"
#include "aaf/export_audio.h"
#include "aaf/export_objects.h"
#include "aaf/export_packet.h"
#include "aaf/export_samples.h"
#include "aaf/export_url.h"
#include "aaf/source_paths.h"
#include "aafobj/api/aaf_result_codes.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "host/application.h"
#include "host/audio.h"
#include "host/corrections.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "host/text_format.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

namespace {

constexpr int aifc_file_type = 1;
constexpr aafCompressEnable_t no_compression = 1;
constexpr aafSlotID_t essence_slot = 1;
constexpr std::uint16_t no_first_channel = 0xFFFF;
constexpr std::size_t extension_size = 4;

bool has_extension(std::u16string_view name) {
  return name.size() >= extension_size && name[name.size() - extension_size] == u'.';
}

bool is_audible(const CGenericEDLFileTrack& track) {
  return track.m_source_object != nullptr && track.m_source_object->is_available() &&
         track.m_no_channels > 0;
}

// The number of a channel of the source in its audio file.
std::uint32_t channel_in_file(const CGenericEDLFileTrack& track, std::uint32_t channel) {
  return track.m_first_channel == no_first_channel ? channel : track.m_first_channel + channel;
}

// The file may have fewer channels than the list believes; then the source's own count
// from its first.
AudioFile* audio_of(const CGenericEDLFileTrack& track, std::uint32_t channel) {
  AudioService& audio = host().audio();
  AudioFile* const file = track.m_source_object->file();
  AudioFile* const found =
      audio.channel_file(file, static_cast<int>(channel_in_file(track, channel)));
  return found != nullptr ? found : audio.channel_file(file, static_cast<int>(channel));
}

void tell_of_existing(const std::u16string& url) {
  StringService& strings = host().strings();
  std::u16string text = strings.load(string_id::aaf_audio_exists_head);
  text += decode_percent_escapes(url);
  text += strings.load(string_id::aaf_audio_exists_middle);
  text += strings.load(string_id::aaf_audio_exists_tail);
  host().message_boxes().message(text.c_str(), BoxIcon::warning, BoxButtons::ok);
}

}  // namespace

class EssenceExport {
 public:
  EssenceExport(CAAFEdlFile& file, IAAFHeader* header)
      : m_file(file),
        m_header(header),
        m_factory(header),
        m_embed(host().application().get_aaf_embed_audio() != 0),
        m_rate{static_cast<aafInt32>(file.sample_rate()), 1} {
    const bool aifc = host().application().get_aaf_export_file_type() == aifc_file_type;
    m_file.m_codec_id = aifc ? kAAFCodecDef_AIFC : kAAFCodecDef_WAVE;
  }

  [[nodiscard]] bool run() {
    measure();
    if (!m_factory.is_ready() || m_factory.class_def(AUID_AAFMasterMob) == nullptr ||
        m_factory.class_def(AUID_AAFNetworkLocator) == nullptr)
      return false;
    if (host().audio().enable_waveforms(1) != 0) return false;
    m_file.m_done_kilobytes = 0;
    m_file.m_abort_requested = 0;
    m_file.m_tracks_done = 0;
    m_file.m_progress = std::make_unique<CEssenceStorageProgressDlg>(
        0U, m_file.m_total_tracks, m_file.m_total_kilobytes, &m_file.m_abort_requested);
    m_file.m_progress->set_position(0);
    const bool written = export_sources_within_memory();
    m_file.drop_packets();
    m_file.m_progress.reset();
    const bool disabled = host().audio().enable_waveforms(0) == 0;
    return written && disabled;
  }

 private:
  // What one channel is written as.
  struct Destination {
    AafRef<IAAFLocator> locator;
    std::u16string file_name;
    std::u16string url;
  };

  void measure() {
    std::uint64_t bytes = 0;
    m_file.m_total_tracks = 0;
    for_each_source([&](const CGenericEDLFileTrack& track) {
      m_file.m_total_tracks += track.m_no_channels;
      AudioFormat format;
      if (track.m_source_object == nullptr || !track.m_source_object->is_available() ||
          !track.m_source_object->get_format(format))
        return true;
      const std::uint64_t sample = format.sample_bits == 24 ? 3 : 2;
      bytes += sample * track.m_no_channels * format.total_samples;
      return true;
    });
    m_file.m_total_kilobytes = static_cast<std::uint32_t>(bytes / 1024);
  }

  bool export_sources() {
    return for_each_source([this](const CGenericEDLFileTrack& track) {
      if (!is_audible(track)) return true;
      for (std::uint32_t channel = 0; channel < track.m_no_channels; ++channel) {
        if (!export_channel(track, channel)) return false;
      }
      return true;
    });
  }

  // Waveforms are switched off and packets dropped also when memory runs out.
  bool export_sources_within_memory() {
    try {
      return export_sources();
    } catch (const std::bad_alloc&) {
      m_file.cancel_export();
      return false;
    }
  }

  // Until `work` answers false; answers whether it never did.
  template <class Work>
  bool for_each_source(Work work) const {
    for (POSITION at = m_file.m_sources.GetHeadPosition(); at != nullptr;) {
      if (!work(*static_cast<const CGenericEDLFileTrack*>(m_file.m_sources.GetNext(at)))) {
        return false;
      }
    }
    return true;
  }

  bool export_channel(const CGenericEDLFileTrack& track, std::uint32_t channel) {
    m_file.m_progress->set_track_text(m_file.m_tracks_done);
    m_file.m_tracks_done += 1;
    const AafRef<IAAFMasterMob> master = make_master_mob(track, channel);
    if (!master) return false;
    Destination destination;
    if (!m_embed && !make_destination(track, channel, destination)) return false;
    if (!create_essence(*master.get(), destination) || !put_format(track)) return false;
    if (!copy_samples(track, channel)) return false;
    if (m_file.m_essence_access->CompleteWrite() != 0) return false;
    if (!m_embed && destination.locator->SetPath(aaf_from_text(destination.url).c_str()) != 0)
      return false;
    m_file.m_essence_access.reset();
    return true;
  }

  AafRef<IAAFMasterMob> make_master_mob(const CGenericEDLFileTrack& track, std::uint32_t channel) {
    AafRef<IAAFMasterMob> master = AAF_MAKE(m_factory, MasterMob);
    const AafRef<IAAFMob> mob = AAF_QUERY(IAAFMob, master.get());
    aafMobID_t id{};
    if (!mob || mob->GetMobID(&id) != 0) return {};
    m_file.m_essence_mobs.Add(id);
    std::u16string name(track.get_file_name());
    if (track.m_no_channels > 1) name += decimal(channel + 1);
    if (mob->SetName(aaf_from_text(name).c_str()) != 0) return {};
    if (m_header->AddMob(mob.get()) != 0) return {};
    return master;
  }

  // The file lies beside the AAF file, by its name alone until it is whole: a locator's
  // address would be taken for the place to write to.
  bool make_destination(const CGenericEDLFileTrack& track, std::uint32_t channel,
                        Destination& destination) {
    const AafRef<IAAFNetworkLocator> network = AAF_MAKE(m_factory, NetworkLocator);
    destination.locator = AAF_QUERY(IAAFLocator, network.get());
    destination.file_name = external_name(track, channel);
    destination.url = essence_url(folder_of(m_file.m_aaf_path.view()), destination.file_name);
    return destination.locator &&
           destination.locator->SetPath(aaf_from_text(destination.file_name).c_str()) == 0;
  }

  std::u16string external_name(const CGenericEDLFileTrack& track, std::uint32_t channel) const {
    std::u16string name = file_name_of(track.get_path(), false);
    if (track.m_no_channels > 1) name += decimal(channel + 1);
    if (!has_extension(name)) name += export_extension(m_file.m_codec_id);
    if (!corrected(Correction::aaf_external_names)) return name;
    return unwritten_name(name, channel_in_file(track, channel) + 1);
  }

  // A name that this export has not used: with the channel's number behind the stem, and
  // with a count behind that.
  std::u16string unwritten_name(const std::u16string& name, std::uint32_t number) const {
    const ExternalAudio& written = *m_file.m_external_audio;
    if (!written.has_written(name)) return name;
    const std::size_t stem = has_extension(name) ? name.size() - extension_size : name.size();
    const std::u16string extension = name.substr(stem);
    const std::u16string numbered = name.substr(0, stem) + decimal(number);
    std::u16string candidate = numbered + extension;
    for (std::int64_t count = 2; written.has_written(candidate); ++count)
      candidate.assign(numbered).append(u"-").append(decimal(count)).append(extension);
    return candidate;
  }

  bool create_essence(IAAFMasterMob& master, const Destination& destination) {
    HRESULT created = try_create(master, destination);
    if (created == AAFRESULT_FILE_EXISTS && !m_embed) {
      if (m_file.m_external_audio->set_aside(destination.file_name)) {
        created = try_create(master, destination);
      } else {
        tell_of_existing(destination.url);
      }
    }
    return created == 0 && m_file.m_essence_access;
  }

  HRESULT try_create(IAAFMasterMob& master, const Destination& destination) {
    ExternalAudio& external = *m_file.m_external_audio;
    // A failure may leave the beginning of a file as well.
    if (!m_embed && !external.exists(destination.file_name)) {
      external.note_written(destination.file_name);
    }
    return master.CreateEssence(essence_slot, m_factory.sound(), m_file.m_codec_id, m_rate, m_rate,
                                no_compression, destination.locator.get(),
                                m_embed ? kAAFContainerDef_AAF : kAAFContainerDef_External,
                                m_file.m_essence_access.put());
  }

  bool put_format(const CGenericEDLFileTrack& track) {
    AudioFormat format;
    if (!track.m_source_object->get_format(format)) return false;
    if (format.total_samples > std::numeric_limits<std::uint32_t>::max()) return false;
    m_file.m_sample_bits = format.sample_bits;
    m_file.m_channel_samples = static_cast<std::uint32_t>(format.total_samples);
    AafRef<IAAFEssenceFormat> settings;
    IAAFEssenceAccess& access = *m_file.m_essence_access.get();
    return access.GetEmptyFileFormat(settings.put()) == 0 &&
           settings->AddFormatSpecifier(kAAFAudioSampleBits, sizeof m_file.m_sample_bits,
                                        reinterpret_cast<aafDataBuffer_t>(&m_file.m_sample_bits)) ==
               0 &&
           access.PutFileFormat(settings.get()) == 0;
  }

  bool copy_samples(const CGenericEDLFileTrack& track, std::uint32_t channel) {
    constexpr std::uint32_t block = CAAFExportAudioPacket::block_samples;
    m_file.m_sample_buffer.resize(std::size_t{bytes_of_sample(m_file.m_sample_bits)} * block);
    m_file.m_cancelled = 0;
    m_file.m_next_packet = 0;
    m_file.m_packet_count = m_file.m_channel_samples / block;
    if (m_file.m_channel_samples % block != 0) m_file.m_packet_count += 1;
    // The last packet of a channel ends it; without one it is at its end.
    m_file.m_channel_done = m_file.m_packet_count == 0 ? 1 : 0;
    AudioFile* const audio = audio_of(track, channel);
    if (audio == nullptr) return false;
    for (std::uint32_t packet = 0; packet < m_file.m_packet_count && m_file.m_cancelled == 0;
         ++packet)
      m_file.request_packet(audio, packet);
    while (m_file.m_channel_done == 0 && m_file.m_cancelled == 0) {
      // With no request open nothing would ever come.
      if (m_file.m_open_requests == 0) {
        m_file.cancel_export();
      } else {
        host().audio().poll_waveforms();
      }
    }
    m_file.drop_packets();
    m_file.m_sample_buffer.clear();
    return m_file.m_cancelled == 0;
  }

  CAAFEdlFile& m_file;
  IAAFHeader* m_header;
  ObjectFactory m_factory;
  bool m_embed;
  aafRational_t m_rate;
};

}  // namespace aaf

bool CAAFEdlFile::export_essence(IAAFHeader* header) {
  return aaf::EssenceExport(*this, header).run();
}
