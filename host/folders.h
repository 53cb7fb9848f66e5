// The host's file system library: folders as opaque handles.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/api.h"
#include "host/text.h"

// Samples without a head of their own: whole samples of all channels in turn, the low
// byte first.
struct RawAudioFormat {
  std::uint32_t sample_rate = 0;
  std::uint32_t channels = 0;
  std::uint32_t sample_bits = 0;
};

// Owned by the host; compared by address.
class EDL_API HostFolder {
 public:
  virtual ~HostFolder() = default;
};

class EDL_API Folders {
 public:
  virtual ~Folders() = default;
  // LFGetLocalPCPath: the folder's local path into `out` of `size` units, ending
  // so that a file name can be appended.
  virtual void local_path(HostFolder* folder, wide_char* out, std::size_t size) = 0;
  // LFFindDir: a folder for a path; may be null.
  [[nodiscard]] virtual HostFolder* find_folder(const wide_char* path) = 0;
  // LFRefresh: makes new files in the folder known. Null is allowed.
  virtual void refresh(HostFolder* folder) = 0;
  // Tells that a new file of the library's holds nothing but samples, although its name
  // ends in ".wav". A host may see to it that they can be played.
  virtual void note_raw_audio(const wide_char* path, const RawAudioFormat& format) {
    static_cast<void>(path);
    static_cast<void>(format);
  }
};
