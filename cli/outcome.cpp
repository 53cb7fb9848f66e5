#include "cli/outcome.h"

#include <algorithm>

#include "cli/file_checks.h"
#include "cli/messages.h"

namespace cli {

namespace {

std::size_t count_of(const CObList* list) {
  return list == nullptr ? 0 : static_cast<std::size_t>(list->GetCount());
}

bool is_report(const embedded::ShownBox& box) {
  return box.kind == embedded::BoxKind::error || box.kind == embedded::BoxKind::warning;
}

bool has_disc_texts(const CGenericEdl& edl) {
  PQ_DETAILS details;
  edl.get_pq_details(&details);
  return std::any_of(std::begin(details.pq_text), std::end(details.pq_text),
                     [](const auto& text) { return text[0] != u'\0'; });
}

}  // namespace

bool tell_of_losses(const FormatRow& format, const CGenericEdl& edl) {
  struct Loss {
    bool carried;
    std::size_t count;
    const char* one;
    const char* many;
  };
  const Loss losses[] = {
      {format.carries.video, count_of(edl.get_video_list()), "video edit", "video edits"},
      {format.carries.locators, count_of(edl.get_locator_list()), "locator", "locators"},
      {format.carries.automation, count_of(edl.get_automation_list()), "run of automation",
       "runs of automation"},
      {format.carries.pq, count_of(edl.get_pq_list()), "disc index entry", "disc index entries"},
  };
  const std::string no_place = " left out: " + std::string(format.title) + " has no place for ";
  if (count_of(edl.get_generic_entry_list()) == 0) warn("the list holds no audio edit");
  bool any = false;
  for (const Loss& loss : losses) {
    if (loss.carried || loss.count == 0) continue;
    any = true;
    warn(counted(loss.count, loss.one, loss.many) + no_place + loss.many);
  }
  for (const std::string& loss : format.further_losses(edl)) {
    any = true;
    warn(loss + " left out: " + std::string(format.title) + " has no place for them");
  }
  if (!format.carries.pq && has_disc_texts(edl)) {
    any = true;
    warn("the texts of the disc" + no_place + "them");
  }
  return any;
}

bool tell_of_reports(const embedded::EmbeddedBoxes& boxes, unsigned skipped,
                     const std::string& done) {
  const std::vector<embedded::ShownBox>& shown = boxes.shown();
  const auto reports =
      static_cast<std::size_t>(std::count_if(shown.begin(), shown.end(), is_report));
  // Once reporting has stopped, nobody counts what else there was.
  const bool stopped = boxes.suppressed() > 0 ||
                       std::any_of(shown.begin(), shown.end(), [](const embedded::ShownBox& box) {
                         return box.answer == embedded::BoxAnswer::stop;
                       });
  if (skipped > 0) {
    warn(counted(skipped, "event has", "events have") +
         " a channel field of no known form, and so no track");
  }
  if (reports > 0) {
    warn(done + ", but not all went well: " +
         counted(reports, "report stands above", "reports stand above") +
         (stopped ? ", and there may be more (--max-reports)" : ""));
  }
  return skipped > 0 || reports > 0 || stopped;
}

bool tell_of_import_report(const FormatRow& format, bool was_read,
                           const embedded::EmbeddedViewer& reports) {
  if (!format.report_means_loss || reports.reports().empty()) return false;
  if (was_read) {
    warn("not all of the list could be read; the report says what was dropped");
  } else {
    hint("the report says why");
  }
  return true;
}

std::string why_not_exported(const FormatRow& format, const std::string& path, result_code code) {
  const std::string title(format.title);
  switch (code) {
    case result::refused:
      return "the list does not fit the format " + title + ", so " + path + " is not written";
    case result::source_refused:
      return "a source of the list is of a kind that " + title + " cannot name, so " + path +
             " is not written (--interchange lets every kind pass)";
    case result::not_sd2:
      return "a source of the list is no Sound Designer II file, as --sound-designer says, so " +
             path + " is not written";
    default: {
      const std::string reason = why_not_made(path);
      return path + " could not be written" + (reason.empty() ? "" : ": " + reason);
    }
  }
}

}  // namespace cli
