#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "aafobj/container/raw_storage.h"
#include "aafobj/container/result.h"

/// Compound files: a tree of storages (folders) and streams (byte arrays) in
/// one file, as AAF files are made of. Stored objects, properties and types
/// belong to the layers above.
///
/// Nothing here is safe for use by two threads at once.
namespace aafobj {

class CompoundState;
class StreamBody;

/// The two kinds of AAF file. Their signatures are in the header of the file;
/// the kind also fixes the sector size of a new file.
enum class FileKind : std::uint8_t {
  aaf_512,  ///< 512-byte sectors; file and streams stay below 2 GiB
  aaf_4k,   ///< 4096-byte sectors; up to just below 16 TiB
};

enum class Access : std::uint8_t { read, modify };

enum class ElementType : std::uint8_t { storage, stream };

/// The class of a storage, as the 16 bytes stored in the file.
using ClassId = std::array<std::uint8_t, 16>;

/// Names a storage of one open file. Small and cheap to copy. The id of a
/// removed storage is refused from then on; ids are not given out twice while
/// the file is open.
enum class StorageId : std::uint32_t {};

inline constexpr StorageId k_root_storage{0};

/// One child of a storage.
struct Element {
  std::u16string name;  ///< as stored, 1 to 31 units
  ElementType type = ElementType::stream;
  StorageId storage{0xffffffff};  ///< of a storage; names nothing for a stream
  ClassId class_id{};             ///< of a storage; zero for a stream
  std::uint64_t size = 0;         ///< of a stream, in bytes
};

/// An open stream with a position of its own. Copies of the handle, and
/// handles from several open_stream() calls, see the same bytes. A handle may
/// outlive its CompoundFile; its operations then give `closed`.
///
/// Small reads and writes are gathered in a buffer of 64 KiB, larger ones go
/// straight to the storage. Memory does not grow with the stream.
class Stream {
 public:
  /// A handle on nothing; every operation gives `closed`.
  Stream() = default;

  explicit operator bool() const { return m_body != nullptr; }

  /// In bytes; 0 when closed.
  std::uint64_t size() const;

  /// Reads at `position` without touching the handle's own. `count` is the
  /// number of bytes delivered: less than asked for only at the end of the
  /// stream, 0 at and past it, which is no error.
  /// Errors: damaged, overlapping, truncated, io_error, closed.
  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) const;

  /// Writes all bytes at `position`, growing the stream when needed; a gap
  /// between its old end and `position` becomes zeros. A failed write may
  /// leave a part of the bytes in the stream.
  /// Errors: read_only, too_large, no_space, io_error, closed, and those of a
  /// damaged file.
  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) const;

  /// Cuts the stream or grows it with zeros. Errors as in write_at().
  Result set_size(std::uint64_t bytes) const;

  /// The same at the handle's position, which moves on by the bytes done.
  Result read(std::span<std::byte> out, std::size_t& count);
  Result write(std::span<const std::byte> bytes);

  std::uint64_t position() const { return m_position; }

  /// May lie past the end: reads give nothing there, a write fills the gap.
  void seek(std::uint64_t position) { m_position = position; }

 private:
  friend class CompoundFile;
  explicit Stream(std::shared_ptr<StreamBody> body) : m_body(std::move(body)) {}

  std::shared_ptr<StreamBody> m_body;
  std::uint64_t m_position = 0;
};

/// One compound file.
///
/// Opening reads the header; directory, allocation tables and streams are
/// read when an operation first needs them, so the time does not grow with
/// the essence. Names are compared without regard to case, as the format
/// orders them.
///
/// Changes reach the file for certain with flush() or close(). Destroying the
/// object without close() abandons what came after the last flush. Space of
/// removed or rewritten streams is reused only after the next flush, so that
/// an abandoned or failed change leaves the file's former tree in place;
/// bytes written over inside an existing stream are not kept, and neither is
/// the tail of one that was cut.
///
/// Any structure may be damaged: an operation that meets the damage gives
/// `damaged`, `overlapping` or `truncated`, and others go on working. The first
/// change to an existing file checks the whole structure as verify() does and
/// is refused when that fails.
class CompoundFile {
 public:
  /// Tells by the first 24 bytes whether this is an AAF file, and of which
  /// kind. Errors: not_aaf, io_error.
  static Result recognise(RawStorage& storage, FileKind& kind);

  /// Makes an empty file on a writable storage, whose former bytes go. Until
  /// close() it has no signature, so an interrupted write is not taken for an
  /// AAF file.
  static Result create(std::shared_ptr<RawStorage> storage, FileKind kind,
                       std::unique_ptr<CompoundFile>& file);

  /// Opens an existing file.
  /// Errors: not_aaf, unsupported, damaged, truncated, io_error; read_only
  /// when a modifiable file is asked for on a storage that is not writable.
  static Result open(std::shared_ptr<RawStorage> storage, Access access,
                     std::unique_ptr<CompoundFile>& file);

  /// The same on a file of the file system. create_disk() replaces an
  /// existing file only when `replace` is true.
  static Result create_disk(const std::filesystem::path& path, FileKind kind, bool replace,
                            std::unique_ptr<CompoundFile>& file);
  static Result open_disk(const std::filesystem::path& path, Access access,
                          std::unique_ptr<CompoundFile>& file);

  CompoundFile(const CompoundFile&) = delete;
  CompoundFile& operator=(const CompoundFile&) = delete;
  ~CompoundFile();

  FileKind kind() const;
  Access access() const;

  /// In bytes: 512 or 4096.
  std::uint32_t sector_size() const;

  /// Writes everything that is still in memory. The file stays open. A write
  /// error of a stream whose last handle has gone is told here.
  Result flush();

  /// flush(), then the signature of a new file. Whatever the result, the file
  /// is closed afterwards and handles on it give `closed`.
  Result close();

  /// Checks the whole structure: every chain, the whole tree, no sector used
  /// twice. Time grows with the file (one word for each sector), memory is one
  /// bit for each sector. Essence is not read.
  Result verify();

  /// The children of a storage in the format's order of names: the shorter
  /// name first, equal lengths by their upper-cased units.
  Result children(StorageId storage, std::vector<Element>& elements);

  /// One child by name. Errors: not_found, bad_name.
  Result find(StorageId parent, std::u16string_view name, Element& element);

  /// Errors: not_found, wrong_type.
  Result open_storage(StorageId parent, std::u16string_view name, StorageId& storage);

  /// Errors: already_exists (of either type), bad_name, read_only.
  Result create_storage(StorageId parent, std::u16string_view name, const ClassId& class_id,
                        StorageId& storage);

  Result class_id(StorageId storage, ClassId& class_id);
  Result set_class_id(StorageId storage, const ClassId& class_id);

  /// Errors: not_found, wrong_type, and `damaged` when the stated size cannot
  /// be in this file.
  Result open_stream(StorageId parent, std::u16string_view name, Stream& stream);

  /// An empty stream. Errors: already_exists (of either type), bad_name,
  /// read_only.
  Result create_stream(StorageId parent, std::u16string_view name, Stream& stream);

  /// Removes a stream, or a storage with all that is in it.
  Result remove(StorageId parent, std::u16string_view name);

  /// Gives a child another name. Errors: not_found, already_exists, bad_name.
  Result rename(StorageId parent, std::u16string_view name, std::u16string_view new_name);

  /// Reads a whole stream; for `properties` and index streams. A stream of
  /// more than `limit` bytes gives `too_large` and takes no memory.
  Result read_stream(StorageId parent, std::u16string_view name, std::size_t limit,
                     std::vector<std::byte>& bytes);

  /// Makes these the bytes of the stream, creating it when it is missing. The
  /// former bytes stay in the file until the next flush.
  Result write_stream(StorageId parent, std::u16string_view name, std::span<const std::byte> bytes);

 private:
  explicit CompoundFile(std::unique_ptr<CompoundState> state);

  std::unique_ptr<CompoundState> m_state;  // null once closed
  FileKind m_kind;
  Access m_access;
  std::uint32_t m_sector_size;
};

}  // namespace aafobj
