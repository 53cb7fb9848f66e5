#include "cli/import_run.h"

#include <fstream>

#include "cli/file_checks.h"
#include "cli/messages.h"
#include "host/framework/file_exception.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"

namespace cli {

namespace {

constexpr std::uint8_t assumed_sample_rate = 2;  // 48000
constexpr std::uint8_t assumed_frame_rate = frame_rate_25;

std::string head_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(detection_size, '\0');
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head;
}

// The format that was named, else the one that is found; null with the reason told.
const FormatRow* input_format(std::span<const FormatRow> rows, const std::string& name,
                              const InputFile& input) {
  if (name.empty()) {
    const FormatRow* const row = detect_format(rows, input.head, input.path);
    if (row == nullptr) {
      tell(input.path + " is of no format that is known here");
      hint("--from names its format; \"edlconv formats\" lists them");
    }
    return row;
  }
  const FormatRow* const row = find_format(rows, name);
  if (row == nullptr) {
    tell("there is no format \"" + name + "\"; \"edlconv formats\" lists them");
    return nullptr;
  }
  if (!row->imports) tell(std::string(row->title) + " can only be written");
  return row->imports ? row : nullptr;
}

// What a list states in front of its first event counts only where no rate was
// given; so a rate is assumed beforehand only for a list that states none.
EDL_DETAILS starting_details(const InputFile& input, const Arguments& arguments) {
  EDL_DETAILS details;
  details.interactive = 1;
  if (arguments.sample_rate) {
    details.sample_rate_index = *arguments.sample_rate;
  } else if (!input.format->states_sample_rate(input.head)) {
    details.sample_rate_index = assumed_sample_rate;
  }
  if (arguments.frame_rate) {
    details.frame_rate = *arguments.frame_rate;
  } else if (!input.format->states_frame_rate(input.head)) {
    details.frame_rate = assumed_frame_rate;
  }
  return details;
}

// Fills in rates that the list did not state after all, and tells of all rates that
// nobody gave.
void settle_rates(const InputFile& input, const Arguments& arguments, CGenericEdl& edl) {
  const bool no_samples = edl.sample_rate_index() == rate_not_set;
  const bool no_frames = edl.frame_rate() == rate_not_set;
  if (no_samples) edl.set_sample_rate_index(assumed_sample_rate);
  if (no_frames) edl.set_frame_rate(assumed_frame_rate);
  const std::string hertz = std::to_string(samples_per_second(edl.sample_rate_index())) + " Hz";
  const std::string frames = frame_rate_text(edl.frame_rate()) + " frames a second";
  const bool samples_assumed =
      !arguments.sample_rate && (no_samples || !input.format->states_sample_rate(input.head));
  const bool frames_assumed =
      !arguments.frame_rate && (no_frames || !input.format->states_frame_rate(input.head));
  if (samples_assumed && frames_assumed) {
    warn(input.path + " does not say its rates; " + hertz + " and " + frames +
         " are assumed (--sample-rate, --frame-rate)");
  } else if (samples_assumed) {
    warn(input.path + " does not say its sample rate; " + hertz + " is assumed (--sample-rate)");
  } else if (frames_assumed) {
    warn(input.path + " does not say its frame rate; " + frames + " is assumed (--frame-rate)");
  }
  if (!arguments.frame_rate && input.format->frame_rate_by_fcm &&
      edl.frame_rate() == frame_rate_2997_non_drop) {
    hint(input.path +
         " says NON-DROP and is read at 29.97 frames a second; if it counts 24, 25 or 30, say so "
         "with --frame-rate");
  }
}

std::string why_not_imported(const InputFile& input, result_code code) {
  const std::string title(input.format->title);
  switch (code) {
    case result::wrong_format:
      return input.path + " is not a list of the format " + title + ", or holds no event of it";
    case result::damaged:
      return input.path + " is damaged: its structure is not that of a file of the format " + title;
    default: {
      const std::string reason = why_unreadable(input.path);
      return reason.empty() ? input.path + " could not be read as " + title : reason;
    }
  }
}

// The result of the import, with the reason told unless the list was read.
result_code read_into(CGenericEdl& edl, const InputFile& input) {
  host().message_boxes().note_place(text_from_utf8(input.path).c_str(), 0);
  try {
    const std::u16string path = path_for(*input.format, input.path);
    const result_code code = edl.import_edl(path.c_str());
    if (code != result::import_complete) tell(why_not_imported(input, code));
    return code;
  } catch (const CFileException& failure) {
    tell(input.path +
         " could not be read to its end: " + error_text(static_cast<int>(failure.m_lOsError)));
    return result::not_done;
  }
}

}  // namespace

InputFile open_input(std::span<const FormatRow> rows, const Arguments& arguments) {
  InputFile input;
  input.path = arguments.input;
  if (!arguments.from.empty()) {
    input.format = input_format(rows, arguments.from, input);
    if (input.format == nullptr) {
      input.exit = exit_usage;
      return input;
    }
  }
  if (const std::string reason = why_unreadable(input.path); !reason.empty()) {
    tell(reason);
    return input;
  }
  input.head = head_of(input.path);
  if (input.head.empty()) {
    tell(input.path + " is empty");
    return input;
  }
  if (input.format == nullptr) input.format = input_format(rows, {}, input);
  if (input.format != nullptr) input.exit = exit_done;
  return input;
}

ImportRun import_list(const InputFile& input, const Arguments& arguments) {
  ImportRun run;
  run.format = input.format;
  run.edl = input.format->make(nullptr, 1, arguments.format);
  const EDL_CONVERSION_SETTINGS settings = conversion_settings(arguments);
  run.edl->set_edl_conversion_settings(&settings);
  const EDL_DETAILS details = starting_details(input, arguments);
  run.edl->set_edl_details(&details);
  run.result = read_into(*run.edl, input);
  if (run.result != result::import_complete) return run;
  run.exit = exit_done;
  if (run.edl->output_incomplete() != 0) {
    tell("audio of " + input.path + " could not be copied to its end; there may be no room left");
    run.exit = exit_failed;
    return run;
  }
  settle_rates(input, arguments, *run.edl);
  if (arguments.channels) {
    run.edl->offset_edl(static_cast<unsigned short>(arguments.channels->first - 1),
                        arguments.channels->count);
  }
  return run;
}

}  // namespace cli
