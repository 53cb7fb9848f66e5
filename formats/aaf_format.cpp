// Advanced Authoring Format files, known by the head of the compound file that they are.
#include <algorithm>

#include "aaf/aaf_edl_file.h"
#include "aaf/export_output.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "formats/format_rows.h"
#include "formats/source_names.h"
#include "native/record_transfer.h"

namespace {

constexpr std::string_view compound_file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
// What stands behind it names the kind of file; a compound file of no kind at all may
// still be one, as the oldest are.
constexpr std::size_t kind_size = 16;
constexpr std::string_view kinds[] = {
    // 512-byte and 4096-byte sectors, as files of today have them.
    {"\x41\x41\x46\x42\x0D\x00\x4F\x4D\x06\x0E\x2B\x34\x01\x01\x01\xFF", kind_size},
    {"\x01\x02\x01\x0D\x00\x02\x00\x00\x06\x0E\x2B\x34\x03\x02\x01\x01", kind_size},
};

HeadMatch match(std::string_view head) {
  if (!head.starts_with(compound_file)) return HeadMatch::none;
  const std::string_view kind = head.substr(compound_file.size()).substr(0, kind_size);
  return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds)
             ? HeadMatch::certain
             : HeadMatch::possible;
}

std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive,
                                  const FormatOptions& /*options*/) {
  return std::make_unique<CAAFEdlFile>(parent, interactive);
}

FileFacts facts(const CGenericEdl& imported) {
  const auto& file = static_cast<const CAAFEdlFile&>(imported);
  FileFacts facts;
  if (const CAAFLogger* const report = file.report(); report != nullptr) {
    for (const CString* const text :
         {&report->company_name, &report->product_name, &report->product_version}) {
      if (text->IsEmpty()) continue;
      facts.maker += (facts.maker.empty() ? "" : " ") + utf8_from_text(text->view());
    }
  }
  for (const CString& name : file.composition_names())
    facts.compositions.push_back(utf8_from_text(name.view()));
  facts.composition = file.composition();
  return facts;
}

std::vector<std::string> outputs(const std::string& path) {
  return {utf8_from_text(aaf::output_path(text_from_utf8(path)))};
}

std::string complete(CGenericEdl& root, const FormatOptions& /*options*/) {
  std::size_t completed = 0;
  const CObList* const list = root.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    if (give_source_name(*static_cast<CGenericEdlEntry*>(list->GetNext(at)))) ++completed;
  }
  if (completed == 0) return {};
  return std::to_string(completed) + (completed == 1 ? " edit names" : " edits name") +
         " no audio file; one with the name of the clip or the reel is taken";
}

// Of the runs of automation that a file has no place for.
constexpr std::uint16_t mute_automation = 1;

// Appends "3 runs …" when there are any.
void add_loss(std::vector<std::string>& losses, std::size_t count, std::string_view one,
              std::string_view many) {
  if (count == 0) return;
  losses.push_back(std::to_string(count).append(" ").append(count == 1 ? one : many));
}

std::vector<std::string> further_losses(const CGenericEdl& root) {
  std::size_t locators = 0;
  std::size_t mutes = 0;
  std::size_t unplaced = 0;
  const CObList* list = root.get_locator_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const locator = static_cast<const CGenericLocatorEntry*>(list->GetNext(at));
    if (!native::is_range_locator(locator->name.view())) ++locators;
  }
  list = root.get_automation_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const chunk = static_cast<const CGenericAutomationChunk*>(list->GetNext(at));
    if (chunk->type == mute_automation) ++mutes;
  }
  list = root.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(list->GetNext(at));
    if (entry->get_stream(0) == no_stream || entry->dest_out <= entry->dest_in) ++unplaced;
  }
  std::vector<std::string> losses;
  add_loss(losses, locators, "locator", "locators");
  add_loss(losses, mutes, "run of mute automation", "runs of mute automation");
  add_loss(losses, unplaced, "edit without a stream or a length",
           "edits without a stream or a length");
  return losses;
}

}  // namespace

FormatRow aaf_row() {
  FormatRow row;
  row.name = "aaf";
  row.title = "Advanced Authoring Format (AAF)";
  row.extensions = {".aaf"};
  row.wants_audio = true;
  row.names_places = true;
  row.carries.automation = true;
  row.carries.locators = true;
  row.make = make;
  row.match = match;
  row.facts = facts;
  row.outputs = outputs;
  row.complete = complete;
  row.further_losses = further_losses;
  // Its clips and its time code say both, as far as it has any.
  row.states_sample_rate = always_stated;
  row.states_frame_rate = always_stated;
  return row;
}
