// Takes the blocks of a channel from the host's audio library, in whatever order they
// come, and writes them in theirs.
#include <algorithm>
#include <memory>
#include <unordered_set>

#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_ids.h"
#include "aaf/essence_progress.h"
#include "aaf/export_packet.h"
#include "aaf/export_samples.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "host/audio.h"
#include "host/host.h"

namespace {

constexpr std::uint32_t block_samples = CAAFExportAudioPacket::block_samples;

// Packets that live. The host hands a packet back as an address, and may do so when it is
// long gone.
std::unordered_set<CAAFExportAudioPacket*>& packets_in_hand() {
  static std::unordered_set<CAAFExportAudioPacket*> packets;
  return packets;
}

void delete_packet(CAAFExportAudioPacket* packet) {
  packets_in_hand().erase(packet);
  delete packet;
}

std::uint32_t samples_of_packet(std::uint32_t index, std::uint32_t channel_samples) {
  return std::min(block_samples, channel_samples - index * block_samples);
}

}  // namespace

void CAAFEdlFile::request_packet(AudioFile* audio, std::uint32_t index) {
  auto made = std::make_unique<CAAFExportAudioPacket>(this, index);
  packets_in_hand().insert(made.get());
  m_open_requests += 1;
  CAAFExportAudioPacket* const packet = made.release();
  host().audio().add_waveform_request(audio, std::int64_t{index} * block_samples, block_samples,
                                      on_waveform_packet, packet);
}

void CAAFEdlFile::on_waveform_packet(std::int32_t* samples, void* packet, int error) {
  auto* const known = static_cast<CAAFExportAudioPacket*>(packet);
  if (!packets_in_hand().contains(known)) return;
  // One that is kept for later has its samples.
  if (known->m_owns_samples != 0) return;
  known->m_samples = samples;
  known->m_owner->store_packet(error, known);
}

void CAAFEdlFile::store_packet(int error, CAAFExportAudioPacket* packet) {
  m_open_requests -= 1;
  if (m_cancelled != 0) {
    m_progress.reset();
    return;
  }
  if (error != 0 || packet->m_samples == nullptr) {
    cancel_export();
    return;
  }
  if (packet->m_index == m_next_packet) {
    if (!write_next_packet(packet)) return;
  } else if (packet->m_index > m_next_packet) {
    keep_for_later(*packet);
  }
  write_pending_packets();
}

// Writes the packet whose turn it is, and deletes it. False when the export ends here.
bool CAAFEdlFile::write_next_packet(CAAFExportAudioPacket* packet) {
  if (!write_packet(*packet) || m_abort_requested != 0) {
    cancel_export();
    return false;
  }
  m_next_packet += 1;
  if (m_next_packet == m_packet_count) m_channel_done = 1;
  delete_packet(packet);
  return true;
}

// The host's samples stand for the time of its call alone.
void CAAFEdlFile::keep_for_later(CAAFExportAudioPacket& packet) {
  const std::uint32_t count = samples_of_packet(packet.m_index, m_channel_samples);
  auto* const copy = new std::int32_t[count];
  std::copy_n(packet.m_samples, count, copy);
  packet.m_samples = copy;
  packet.m_owns_samples = 1;
  m_pending_packets.AddTail(&packet);
}

void CAAFEdlFile::write_pending_packets() {
  for (POSITION at = m_pending_packets.GetHeadPosition(); at != nullptr;) {
    const POSITION here = at;
    auto* const packet = static_cast<CAAFExportAudioPacket*>(m_pending_packets.GetNext(at));
    if (packet->m_index != m_next_packet) continue;
    m_pending_packets.RemoveAt(here);
    if (!write_next_packet(packet)) return;
    at = m_pending_packets.GetHeadPosition();
  }
}

bool CAAFEdlFile::write_packet(const CAAFExportAudioPacket& packet) {
  const std::uint32_t count = samples_of_packet(packet.m_index, m_channel_samples);
  const std::uint32_t sample_bytes = aaf::bytes_of_sample(m_sample_bits);
  const std::uint32_t bytes = count * sample_bytes;
  bool written = sample_bytes != 0;
  if (written) {
    aaf::pack_samples({packet.m_samples, count}, sample_bytes,
                      uids_match(m_codec_id, kAAFCodecDef_AIFC), m_sample_buffer.data());
    aafUInt32 samples_written = 0;
    aafUInt32 bytes_written = 0;
    written = m_essence_access->WriteSamples(count, bytes, m_sample_buffer.data(), &samples_written,
                                             &bytes_written) == 0;
  }
  if (!written) {
    m_sample_buffer = {};
    return false;
  }
  m_done_kilobytes += bytes / 1024;
  if (m_progress != nullptr) m_progress->set_position(m_done_kilobytes);
  return true;
}

void CAAFEdlFile::cancel_export() {
  m_cancelled = 1;
  host().audio().cancel_waveform_requests(on_waveform_packet);
}

void CAAFEdlFile::drop_packets() {
  m_pending_packets.RemoveAll();
  m_open_requests = 0;
  std::unordered_set<CAAFExportAudioPacket*>& packets = packets_in_hand();
  for (auto at = packets.begin(); at != packets.end();) {
    CAAFExportAudioPacket* const packet = *at;
    if (packet->m_owner != this) {
      ++at;
      continue;
    }
    at = packets.erase(at);
    delete packet;
  }
}
