#include "cli/import_run.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "cli/messages.h"
#include "host/framework/file_exception.h"
#include "host/rates.h"

namespace cli {

namespace {

constexpr std::uint8_t assumed_sample_rate = 2;  // 48000

std::string head_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(detection_size, '\0');
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head;
}

const FormatRow* input_format(std::span<const FormatRow> rows, const Arguments& arguments,
                              const std::string& head) {
  if (arguments.from.empty()) {
    const FormatRow* const row = detect_format(rows, head, arguments.input);
    if (row == nullptr) {
      tell(arguments.input + (head.empty() ? " is empty" : " is of no format that is known here"));
      hint("name its format with --from; \"edlconv formats\" lists them");
    }
    return row;
  }
  const FormatRow* const row = find_format(rows, arguments.from);
  if (row == nullptr) tell("there is no format \"" + arguments.from + "\"");
  return row;
}

std::string frames_text(std::uint8_t frame_rate_index) {
  static constexpr const char* names[] = {"24", "25", "29.97 non-drop", "29.97 drop", "30"};
  return std::string(frame_rate_index < frame_rate_count ? names[frame_rate_index] : "25") +
         " frames a second (--frame-rate)";
}

std::string samples_text(std::uint8_t sample_rate_index) {
  return std::to_string(samples_per_second(sample_rate_index)) + " Hz (--sample-rate)";
}

// What stands in a list in front of the first event counts only where no rate was
// given; so a rate is assumed beforehand only for a list that says none.
EDL_DETAILS starting_details(const FormatRow& format, const Arguments& arguments,
                             const std::string& head) {
  EDL_DETAILS details;
  details.interactive = 1;
  if (arguments.sample_rate) {
    details.sample_rate_index = *arguments.sample_rate;
  } else if (!format.states_sample_rate(head)) {
    details.sample_rate_index = assumed_sample_rate;
  }
  if (arguments.frame_rate) {
    details.frame_rate = *arguments.frame_rate;
  } else if (!format.states_frame_rate(head)) {
    details.frame_rate = frame_rate_25;
  }
  return details;
}

void tell_of_rates(const FormatRow& format, const Arguments& arguments, const std::string& head,
                   CGenericEdl& edl) {
  EDL_DETAILS details;
  edl.get_edl_details(&details);
  if (details.frame_rate == rate_not_set) edl.set_frame_rate(frame_rate_25);
  if (details.sample_rate_index == rate_not_set) edl.set_sample_rate_index(assumed_sample_rate);
  const bool frames_assumed = !arguments.frame_rate && (!format.states_frame_rate(head) ||
                                                        details.frame_rate == rate_not_set);
  const bool samples_assumed =
      !arguments.sample_rate &&
      (!format.states_sample_rate(head) || details.sample_rate_index == rate_not_set);
  const TimeBase base = edl.time_base();
  if (frames_assumed && samples_assumed) {
    warn("the list does not say its rates; taken are " + samples_text(base.sample_rate_index) +
         " and " + frames_text(base.frame_rate_index));
  } else if (frames_assumed) {
    warn("the list does not say its frame rate; taken are " + frames_text(base.frame_rate_index));
  } else if (samples_assumed) {
    warn("the list does not say its sample rate; taken are " +
         samples_text(base.sample_rate_index));
  }
  if (!arguments.frame_rate && format.states_sample_rate == never_stated &&
      details.frame_rate == frame_rate_2997_non_drop) {
    hint(
        "the list says NON-DROP and is read at 29.97 frames; if it counts 24, 25 or 30, give "
        "--frame-rate");
  }
}

// Why an import ended with a code other than success.
std::string why_not_imported(const FormatRow& format, const std::string& path, result_code code) {
  const std::string title(format.title);
  switch (code) {
    case result::wrong_format:
      return path + " is not a list of the format " + title;
    case result::damaged:
      return path + " is damaged: the structure of a " + title + " file is broken";
    default: {
      const std::string reason = why_unreadable(path);
      return reason.empty() ? path + " could not be read as " + title : reason;
    }
  }
}

}  // namespace

std::string why_unreadable(const std::string& path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) return path + ": " + std::strerror(errno);
  if (S_ISDIR(about.st_mode)) return path + " is a folder";
  errno = 0;
  if (std::ifstream file(path, std::ios::binary); !file) {
    return path + ": " + std::strerror(errno != 0 ? errno : EIO);
  }
  return {};
}

ImportRun import_list(std::span<const FormatRow> rows, const Arguments& arguments) {
  ImportRun run;
  if (const std::string reason = why_unreadable(arguments.input); !reason.empty()) {
    tell(reason);
    return run;
  }
  const std::string head = head_of(arguments.input);
  run.format = input_format(rows, arguments, head);
  if (run.format == nullptr) {
    if (!arguments.from.empty()) run.exit = exit_usage;
    return run;
  }
  run.edl = run.format->make(nullptr, 1, arguments.format);
  run.edl->set_edl_conversion_settings(&arguments.settings);
  const EDL_DETAILS details = starting_details(*run.format, arguments, head);
  run.edl->set_edl_details(&details);
  try {
    run.result = run.edl->import_edl(text_from_utf8(arguments.input).c_str());
  } catch (const CFileException& failure) {
    tell(arguments.input +
         " could not be read to its end: " + std::strerror(static_cast<int>(failure.m_lOsError)));
    return run;
  }
  if (run.result != result::import_complete) {
    tell(why_not_imported(*run.format, arguments.input, run.result));
    return run;
  }
  run.exit = exit_done;
  tell_of_rates(*run.format, arguments, head, *run.edl);
  if (arguments.channels) {
    run.edl->offset_edl(static_cast<unsigned short>(arguments.channels->first - 1),
                        static_cast<unsigned short>(arguments.channels->count));
  }
  return run;
}

}  // namespace cli
