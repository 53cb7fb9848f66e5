// The EDL2 file: a fixed-record edit list of eight playout channels on which edits
// do not overlap.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/generic_edl.h"
#include "host/framework/ob_list.h"

class CGenericEdlEntry;

// A reel record of the file's extensions, uninterpreted.
class CM2ReelInfo : public CObject {
 public:
  std::array<unsigned char, 32> m_bytes = {};
};

class EDL_API CMarlo2Edl : public CGenericEdl {
 public:
  explicit CMarlo2Edl(CGenericEdl* parent = nullptr, int interactive = 0);
  ~CMarlo2Edl() override;

  // 100: read. 4: not an EDL2 file. 10: extensions or a record that cannot be read;
  // no entry is then in the list, though PQ entries read so far are. 11: not opened.
  [[nodiscard]] result_code import_edl(const wide_char* path) override;
  // 101: written. 9: refused; a list that the eight channels cannot hold is reported
  // and no file is made, a sample rate above 48000 leaves an empty one without a
  // word. 11: not opened. A write that the system refuses raises CFileException.
  [[nodiscard]] result_code export_edl(const wide_char* path, int flag) override;
  // Always 0.
  [[nodiscard]] int supports_reel_objects(const wide_char* name) const override;

  // CM2ReelInfo objects of the last reel block that an import met; null for none.
  [[nodiscard]] const CObList* reel_records() const { return m_reels.get(); }

 private:
  static constexpr std::size_t channel_count = 8;

  class Reader;
  class Writer;
  class Allocation;

  // Forget the edits of all channels, or delete them first.
  void clear_channels();
  void delete_channels();
  // Whether the list takes an entry that was read: always.
  [[nodiscard]] static bool accepts(const CGenericEdlEntry& entry);
  void merge_channels();
  // Puts the entries of the list on their channels. The row of the error table that
  // refuses one, 0 for none.
  [[nodiscard]] unsigned short allocate_channels();
  [[nodiscard]] std::uint8_t bit_depth() const;

  // Edits by channel. On import they belong to these lists until they are merged
  // into the generic list; on export they are the generic list's.
  std::array<std::unique_ptr<CObList>, channel_count> m_channel_lists;
  std::array<std::uint32_t, channel_count> m_file_counts = {};
  std::uint32_t m_pq_count = 0;
  std::array<std::uint32_t, channel_count> m_channel_counts = {};
  // CM2ReelInfo objects, owned; null until the file brings some.
  std::unique_ptr<CObList> m_reels;
};
