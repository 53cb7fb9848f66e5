// One block of a channel's samples on its way into an AAF file.
#pragma once

#include <cstdint>

#include "host/framework/object.h"

class CAAFEdlFile;

class CAAFExportAudioPacket : public CObject {
 public:
  // Samples of a whole block.
  static constexpr std::uint32_t block_samples = 1U << 18;

  CAAFExportAudioPacket(CAAFEdlFile* owner, std::uint32_t index) : m_owner(owner), m_index(index) {}
  ~CAAFExportAudioPacket() override {
    if (m_owns_samples != 0) delete[] m_samples;
  }
  CAAFExportAudioPacket(const CAAFExportAudioPacket&) = delete;
  CAAFExportAudioPacket& operator=(const CAAFExportAudioPacket&) = delete;

  CAAFEdlFile* m_owner;
  // From 0, in the order of the channel.
  std::uint32_t m_index;
  // Words with the audio in the low 24 bits: the host's, or with m_owns_samples an array
  // of this object.
  std::int32_t* m_samples = nullptr;
  std::int32_t m_owns_samples = 0;
};
