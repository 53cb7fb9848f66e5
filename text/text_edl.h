// What the line formats share: the two drivers, which open a file and go through
// it, and the hooks by which a format says what its lines mean.
//
// Hooks answer the codes of core/result_codes.h to their driver. A line that is
// not good is reported and the reading goes on; after a box that the person
// answers with "stop", no more boxes come in this run.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/generic_edl.h"
#include "text/line_cursor.h"
#include "text/line_words.h"
#include "text/text_file.h"

class CGenericEdlEntry;
class CGenericEdlVideoEntry;

// Characters of the buffer of every line file.
inline constexpr unsigned short line_file_size = 250;
// What the drivers hand to the hooks of a line: 150 characters and a terminator.
inline constexpr int event_line_size = 151;
// Room that get_format_name may fill.
inline constexpr int format_name_size = 64;

namespace text {
class DumpIndex;
}

// The dump file beside a list: its path with the last three characters replaced by
// "dmp". Empty for a path of fewer.
EDL_API std::u16string dump_file_path(std::u16string_view edl_path);

class EDL_API CTextEdl : public CGenericEdl {
 public:
  CTextEdl(CGenericEdl* parent, int interactive);
  ~CTextEdl() override;

  // The drivers. Import: 0 when the file cannot be opened, 4 when no first event
  // is found, else 100. Export: 0 when the file cannot be made, else 101; see also
  // output_incomplete. An import raises CFileException when the system fails to
  // read an open file; entries read so far stay.
  result_code import_edl(const wide_char* path) override;
  result_code export_edl(const wide_char* path, int option) override;

  // Writes one entry; 92 reports it as one that the format cannot hold.
  virtual result_code write_event(CTextFile& file, CGenericEdlEntry* entry);
  // Reads the head; 1 with the file at its first event line, 0 for none.
  virtual int find_first_event(CTextFile& file);
  virtual result_code write_header(CTextFile& file, const wide_char* path);
  virtual result_code write_footer(CTextFile& file, const wide_char* path);
  // Fills `out` of format_name_size units.
  virtual int get_format_name(wide_char* out) const;
  // Characters up to and past the next word.
  [[nodiscard]] virtual int skip_token(const wide_char* text) const;
  // A line that the format treats on its own; 0 drops it.
  virtual int check_special_line(CGenericEdlEntry* entry, const wide_char* text);
  // Reads one audio edit: 90, 92 or 95; others drop it in silence. `skip` becomes
  // nonzero for a line to be counted in skipped_count.
  virtual result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) = 0;
  virtual result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) = 0;
  // Nonzero passes an event line over.
  virtual int is_ignored_event(const wide_char* text);
  virtual int is_audio_event(const wide_char* text);
  virtual int is_video_event(const wide_char* text);
  // A line behind an event that is none itself. The entry is the last one of its
  // list, null when there is none yet.
  virtual void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text);
  virtual void parse_video_line(CGenericEdlVideoEntry* entry, const wide_char* text);
  // A "COMMENT:" line with a channel pair ("2-3") or an audio mapping ("AUDIO
  // MAPPING FROM CH3 TO CH1"): the first number less 1 becomes stream 0, the
  // second less 1 the source channel. `word` is the line's first word, `rest` what
  // stands behind it. 1 when the line is dealt with.
  virtual int parse_comment(std::u16string_view word, std::u16string_view rest,
                            CGenericEdlEntry* entry, int allow);
  // An "FCM:" line, which names the frame rate of what follows. 1 when it was one.
  virtual int parse_fcm(std::u16string_view word, std::u16string_view rest);

  // Reads the next line, at most size - 1 characters of it, and blanks out what
  // stands in front of its first space, letter or digit.
  static int read_file_line(CTextFile& file, wide_char* out, int size);
  // The word at the head of a text, kept in token(); its length.
  int read_token(const wide_char* text);
  [[nodiscard]] const wide_char* token() const { return token_.data(); }
  [[nodiscard]] static int skip_space(const wide_char* text);
  [[nodiscard]] static int is_number(const wide_char* text);
  // Reads source in, source out, destination in and out, as time codes at the
  // EDL's rates; a missing one is 0. `negative` is set when source in or
  // destination in begins with "-". Characters read.
  int read_four_times(CGenericEdlEntry* entry, const wide_char* text, bool* negative) const;
  static int read_four_times(CGenericEdlVideoEntry* entry, const wide_char* text);
  // The same, passing the words of a line.
  void read_four_times(CGenericEdlEntry* entry, LineCursor& line, bool* negative) const;
  static void read_four_times(CGenericEdlVideoEntry* entry, LineCursor& line);
  [[nodiscard]] std::int64_t frames_to_samples(std::int64_t frames) const;
  [[nodiscard]] std::int64_t samples_to_frames(std::int64_t samples) const;

  // The tails of the two lists, null when empty.
  [[nodiscard]] CGenericEdlEntry* first_entry() const;
  [[nodiscard]] CGenericEdlVideoEntry* first_video_entry() const;

  // Give an entry the streams and source channels of the fields that are used.
  // `flags` holds `count` words, nonzero for a used field. With none used the entry
  // gets one stream that goes nowhere.
  static void apply_mapped_channels(int count, const int* flags, const std::uint16_t* table,
                                    CGenericEdlEntry* entry);
  static void apply_channel_mode(int count, const int* flags, unsigned mode,
                                 CGenericEdlEntry* entry);

  // A stable sort by destination in.
  void sort_by_dest_in();
  // Joins edits that meet and share a fade length into overlapping edits: each side
  // grows by half of it.
  void fold_crossfades();
  void mark_all_cuts();
  // Rewrites fades as the events that line formats have for them: cuts from black,
  // cuts and dissolves to black. Changes the entry list.
  void split_for_export();
  // Puts entries of equal destination in into the order of their stream 0.
  void sort_same_start(CObList* list);
  // Numbers the events from 1. At most two lines share a number.
  void renumber_events(CObList* list);

  // The entry beside `position` with the same event number: the next one, or the
  // one before; null for neither.
  [[nodiscard]] CGenericEdlEntry* find_event_neighbour(const CGenericEdlEntry* entry,
                                                       POSITION position) const;
  // The first entry of the dump list that covers this entry's source range (or any
  // when that is empty), on the same stream and a reel with the same first three
  // characters. Entries of the dump list keep their values once this was asked.
  [[nodiscard]] CGenericEdlEntry* find_dump_entry(const CGenericEdlEntry* entry) const;
  // Reads the dump file beside the list once: 1 when it is there.
  int load_dump();
  // Points entries of reel "900" to the sources that the dump file names.
  void resolve_dump_sources();
  [[nodiscard]] CObList* get_dump_list();

  // Nonzero: boxes about the dump file are shown; lasts as long as the object.
  std::int32_t report_dump_errors = 1;

 protected:
  // For a hook to read its text by; the words of the line that is being imported are
  // found once for all hooks.
  [[nodiscard]] LineCursor cursor_of(const wide_char* text) const {
    return text == line_words_.line() ? LineCursor(line_words_) : LineCursor(text);
  }
  // Shows a row of the error table if `flag` is nonzero, and takes the person's
  // answer into it.
  void report(std::int32_t& flag, unsigned short error_index, int event_number,
              int event_kind = 0) const;
  // Brings fades inside the edit and reports lengths that do not agree.
  void check_lengths(CGenericEdlEntry& entry, std::int32_t& flag) const;
  // Passes a line that is no event to the hooks of the events behind which it
  // stands: 1 audio, 2 video, 3 both.
  void dispatch_line(int last_kind, const wide_char* text);
  // The title line: the file's name padded to 10 characters, `note`, the format.
  // 9 with nothing written when it does not fit.
  result_code write_title(CTextFile& file, const wide_char* path, std::u16string_view note) const;
  // A line behind an event that is an "FCM:" line or, by its first word, a comment.
  void take_fcm_or_comment(CGenericEdlEntry* entry, const wide_char* text, int allow_comments);
  // Tells the host where the reading stands, in front of a box.
  void note_reading_place() const;
  // Names the file in reports while it is read.
  class ReadingScope {
   public:
    ReadingScope(CTextEdl& edl, const CTextFile& file) : edl_(edl), before_(edl.reading_) {
      edl.reading_ = &file;
    }
    ~ReadingScope();
    ReadingScope(const ReadingScope&) = delete;
    ReadingScope& operator=(const ReadingScope&) = delete;

   private:
    CTextEdl& edl_;
    const CTextFile* before_;
  };

 private:
  struct Run {
    std::int32_t report = 0;
    int last_kind = 0;
  };

  // Makes the words of a line known for as long as it lives.
  class WordsScope {
   public:
    WordsScope(CTextEdl& edl, std::u16string_view text) : words_(edl.line_words_) {
      words_.find(text);
    }
    ~WordsScope() { words_.forget(); }
    WordsScope(const WordsScope&) = delete;
    WordsScope& operator=(const WordsScope&) = delete;

   private:
    text::LineWords& words_;
  };

  // The line is terminated.
  void import_line(Run& run, std::u16string_view line);
  void import_audio_line(Run& run, const wide_char* text);
  void import_video_line(Run& run, const wide_char* text, bool also_audio);
  result_code read_dump_file(const wide_char* name);
  int take_channel_pair(std::u16string_view word, CGenericEdlEntry* entry);
  int take_audio_mapping(std::u16string_view rest, CGenericEdlEntry* entry);
  void split_fades();
  void remove_black_pairs();

  int dump_loaded_ = 0;
  bool dump_refused_ = false;
  wide_char path_[260] = {};
  CObList* dump_list_ = nullptr;
  // Of the dump list as it last was.
  mutable std::unique_ptr<text::DumpIndex> dump_index_;
  std::array<wide_char, 1024> token_ = {};
  const CTextFile* reading_ = nullptr;
  text::LineWords line_words_;
};
