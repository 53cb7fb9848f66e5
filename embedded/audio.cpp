#include "embedded/audio.h"

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "embedded/sound_file.h"

namespace embedded {

namespace {

// Blocks that lie ready, or are being read, in front of the one that is delivered:
// a megabyte each.
constexpr std::size_t most_ahead = 4;

class FileSource;

class Channel final : public AudioFile {
 public:
  Channel(const FileSource& source, std::uint32_t number) : source_(&source), number_(number) {}
  [[nodiscard]] const FileSource& source() const { return *source_; }
  [[nodiscard]] std::uint32_t number() const { return number_; }

 private:
  const FileSource* source_;
  std::uint32_t number_;
};

// An audio file whose head has been read. It is closed again: a film has more
// sources than a program may have open files.
class FileSource final : public CAudCnt {
 public:
  // The handle of the file as a whole.
  class Whole final : public AudioFile {
   public:
    explicit Whole(FileSource& source) : source_(source) {}
    [[nodiscard]] FileSource& source() const { return source_; }

   private:
    FileSource& source_;
  };

  FileSource(std::string path, const SoundFormat& format)
      : path_(std::move(path)), format_(format) {
    for (std::uint32_t i = 0; i < format.channels; ++i)
      channels_.push_back(std::make_unique<Channel>(*this, i));
  }

  [[nodiscard]] bool is_available() const override { return true; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return format_.samples_per_second; }
  [[nodiscard]] bool get_format(AudioFormat& format) const override {
    format.sample_bits = format_.sample_bits;
    format.total_samples = format_.total_samples;
    format.channels = format_.channels;
    return true;
  }
  [[nodiscard]] AudioFile* file() const override { return whole_.get(); }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const SoundFormat& format() const { return format_; }
  [[nodiscard]] Channel* channel(int number) const {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < channels_.size() ? channels_[index].get() : nullptr;
  }

 private:
  std::string path_;
  SoundFormat format_;
  std::unique_ptr<Whole> whole_ = std::make_unique<Whole>(*this);
  std::vector<std::unique_ptr<Channel>> channels_;
};

Channel* as_channel(AudioFile* file) {
  if (auto* const channel = dynamic_cast<Channel*>(file); channel != nullptr) return channel;
  auto* const whole = dynamic_cast<FileSource::Whole*>(file);
  return whole == nullptr ? nullptr : whole->source().channel(0);
}

struct Request {
  const Channel* channel = nullptr;
  std::int64_t position = 0;
  std::uint32_t count = 0;
  WaveformCallback callback = nullptr;
  void* packet = nullptr;
};

struct Block {
  Request request;
  std::vector<std::int32_t> samples;
  bool failed = false;
};

}  // namespace

// The requests between the caller's thread and the one that reads. Every member
// that both touch is guarded by the mutex; the open file is the reader's own.
class EmbeddedAudio::Queue {
 public:
  Queue() : reader_([this] { run(); }) {}
  ~Queue() {
    {
      const std::lock_guard lock(mutex_);
      ends_ = true;
    }
    changed_.notify_all();
    reader_.join();
  }
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;

  void add(const Request& request) {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(request);
    }
    changed_.notify_all();
  }

  // The next block in order, or none when no request is open.
  std::optional<Block> take() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !ready_.empty() || (waiting_.empty() && !reading_); });
    if (ready_.empty()) return std::nullopt;
    Block block = std::move(ready_.front());
    ready_.pop_front();
    lock.unlock();
    changed_.notify_all();
    return block;
  }

  // Takes the memory of a delivered block back for the next one.
  void recycle(Block&& block) {
    const std::lock_guard lock(mutex_);
    spare_ = std::move(block.samples);
  }

  void cancel(WaveformCallback callback) {
    {
      const std::lock_guard lock(mutex_);
      std::erase_if(waiting_, [callback](const Request& r) { return r.callback == callback; });
      std::erase_if(ready_, [callback](const Block& b) { return b.request.callback == callback; });
      if (reading_ && reading_->callback == callback) drop_ = true;
    }
    changed_.notify_all();
  }

 private:
  void run() {
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock,
                    [this] { return ends_ || (!waiting_.empty() && ready_.size() < most_ahead); });
      if (ends_) return;
      Block block;
      block.request = waiting_.front();
      block.samples = std::move(spare_);
      waiting_.pop_front();
      reading_ = block.request;
      drop_ = false;
      lock.unlock();
      block.failed = !read(block);
      lock.lock();
      reading_.reset();
      if (!drop_) ready_.push_back(std::move(block));
      changed_.notify_all();
    }
  }

  bool read(Block& block) {
    try {
      block.samples.resize(block.request.count);
      const Channel* const channel = block.request.channel;
      if (channel == nullptr || block.request.position < 0) return false;
      if (!open(channel->source())) return false;
      return file_->read(channel->number(), static_cast<std::uint64_t>(block.request.position),
                         block.samples);
    } catch (const std::bad_alloc&) {
      block.samples.clear();
      return false;
    }
  }

  bool open(const FileSource& source) {
    if (file_ != nullptr && open_ == &source) return true;
    file_ = SoundFile::open(source.path());
    open_ = &source;
    // A file that has changed since it was found is another file.
    if (file_ != nullptr && file_->format() != source.format()) file_.reset();
    return file_ != nullptr;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Request> waiting_;
  std::deque<Block> ready_;
  std::optional<Request> reading_;
  std::vector<std::int32_t> spare_;
  bool drop_ = false;
  bool ends_ = false;

  std::unique_ptr<SoundFile> file_;
  const FileSource* open_ = nullptr;
  // The last member: it runs as soon as it is made.
  std::thread reader_;
};

EmbeddedAudio::EmbeddedAudio() = default;
EmbeddedAudio::~EmbeddedAudio() = default;

CAudCnt* EmbeddedAudio::source(const std::string& path) {
  std::error_code failure;
  const std::string real = std::filesystem::canonical(path, failure).string();
  if (failure || !std::filesystem::is_regular_file(real, failure)) return nullptr;
  const auto known = sources_.find(real);
  if (known != sources_.end()) return known->second.get();
  const auto file = SoundFile::open(real);
  if (file == nullptr) return nullptr;
  auto made = std::make_unique<FileSource>(real, file->format());
  return sources_.emplace(real, std::move(made)).first->second.get();
}

bool EmbeddedAudio::is_source(const std::string& path) const {
  std::error_code failure;
  const std::string real = std::filesystem::canonical(path, failure).string();
  return !failure && sources_.contains(real);
}

std::string EmbeddedAudio::path_of(const CAudCnt* source) const {
  for (const auto& [path, known] : sources_) {
    if (known.get() == source) return path;
  }
  return {};
}

AudioFile* EmbeddedAudio::channel_file(AudioFile* file, int channel) {
  auto* const whole = dynamic_cast<FileSource::Whole*>(file);
  return whole == nullptr ? nullptr : whole->source().channel(channel);
}

int EmbeddedAudio::enable_waveforms(int on) {
  queue_.reset();
  if (on == 0) return 0;
  try {
    queue_ = std::make_unique<Queue>();
  } catch (const std::system_error&) {
    return 1;
  }
  return 0;
}

void EmbeddedAudio::add_waveform_request(AudioFile* file, std::int64_t position,
                                         std::uint32_t count, WaveformCallback callback,
                                         void* packet) {
  if (queue_ == nullptr) return;
  queue_->add({as_channel(file), position, count, callback, packet});
}

void EmbeddedAudio::poll_waveforms() {
  if (queue_ == nullptr) return;
  auto block = queue_->take();
  if (!block) return;
  block->request.callback(block->samples.data(), block->request.packet, block->failed ? 1 : 0);
  // The callback may have switched waveforms off.
  if (queue_ != nullptr) queue_->recycle(std::move(*block));
}

void EmbeddedAudio::cancel_waveform_requests(WaveformCallback callback) {
  if (queue_ != nullptr) queue_->cancel(callback);
}

}  // namespace embedded
