// A silent host with a little audio in memory, a folder of its own for files, and the AAF
// object library of this build.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "host/plain_host.h"

namespace fuzzing {

// All sources of a run: a few samples of silence.
class LittleAudio final : public CAudCnt, public AudioFile {
 public:
  [[nodiscard]] bool is_available() const override { return true; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return rate; }
  [[nodiscard]] bool get_format(AudioFormat& format) const override {
    format = {bits, samples, 2};
    return true;
  }
  [[nodiscard]] AudioFile* file() const override { return const_cast<LittleAudio*>(this); }

  std::uint32_t rate = 48000;
  std::uint32_t bits = 16;
  std::uint64_t samples = 4;
};

// Delivers what was asked for last, first.
class LittleService final : public PlainAudio {
 public:
  AudioFile* channel_file(AudioFile* file, int) override { return file; }
  int enable_waveforms(int) override { return 0; }
  void add_waveform_request(AudioFile*, std::int64_t position, std::uint32_t count,
                            WaveformCallback callback, void* packet) override {
    m_waiting.push_back({position, count, callback, packet});
  }
  void poll_waveforms() override {
    if (m_waiting.empty()) return;
    const Request request = m_waiting.back();
    m_waiting.pop_back();
    request.callback(m_words.data(), request.packet, 0);
  }
  void cancel_waveform_requests(WaveformCallback) override { m_waiting.clear(); }

 private:
  struct Request {
    std::int64_t position;
    std::uint32_t count;
    WaveformCallback callback;
    void* packet;
  };
  std::deque<Request> m_waiting;
  // A whole block of silence, made once.
  std::vector<std::int32_t> m_words = std::vector<std::int32_t>(1 << 18);
};

class ExportHost final : public PlainHost {
 public:
  struct Choices final : PlainApplication {
    HostFolder* get_imported_audio_folder() override { return folder; }
    int get_aaf_export_file_type() override { return aifc ? 1 : 0; }
    int get_aaf_embed_audio() override { return embed ? 1 : 0; }
    int get_aaf_export_fixed_gain() override { return fixed_gain ? 1 : 0; }
    int get_aaf_export_gain_automation() override { return gain_automation ? 1 : 0; }
    int get_aaf_export_pan_automation() override { return pan_automation ? 1 : 0; }

    HostFolder* folder = nullptr;
    bool aifc = false;
    bool embed = true;
    bool fixed_gain = false;
    bool gain_automation = false;
    bool pan_automation = false;
  };

  ExportHost()
      : m_path(std::filesystem::temp_directory_path() /
               ("aaf_export_fuzz_" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
    choices.folder = &m_folders.only;
    m_folders.path = text_from_utf8("/" + m_path.string() + "/");
    m_viewer.path = m_path;
    set_host(this);
  }
  ~ExportHost() override {
    set_host(nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  ExportHost(const ExportHost&) = delete;
  ExportHost& operator=(const ExportHost&) = delete;

  Application& application() override { return choices; }
  AudioService& audio() override { return m_audio; }
  Corrections& corrections() override { return m_corrections; }
  Folders& folders() override { return m_folders; }
  Viewer& viewer() override { return m_viewer; }

  // Empties the folder.
  void forget_files() const {
    for (const auto& file : std::filesystem::directory_iterator(m_path))
      std::filesystem::remove_all(file.path());
  }
  [[nodiscard]] std::u16string file(const std::string& name) const {
    return text_from_utf8((m_path / name).string());
  }

  Choices choices;
  bool corrections_on = true;

 private:
  struct OnlyFolder final : PlainFolders {
    struct One final : HostFolder {};
    void local_path(HostFolder*, wide_char* out, std::size_t size) override {
      copy_text(out, size, path);
    }
    One only;
    std::u16string path;
  };
  struct Switches final : Corrections {
    explicit Switches(const bool& on) : all(on) {}
    bool is_on(Correction) override { return all; }
    const bool& all;
  };
  struct ReportFolder final : PlainViewer {
    CString report_path(const wide_char*) override {
      return {text_from_utf8((path / "report.htm").string())};
    }
    int open(const wide_char*, const wide_char*, int, bool) override { return 33; }
    std::filesystem::path path;
  };

  std::filesystem::path m_path;
  LittleService m_audio;
  Switches m_corrections{corrections_on};
  OnlyFolder m_folders;
  ReportFolder m_viewer;
};

}  // namespace fuzzing
