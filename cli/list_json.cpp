#include "cli/list_json.h"

#include "cli/messages.h"
#include "cli/records_json.h"
#include "host/rates.h"

namespace cli {

namespace {

constexpr int schema = 1;
constexpr int indent = 2;

std::string line_of(const Json& json) {
  // What is no UTF-8 after all is replaced, never a reason to give up.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// An object that is open, at a depth.
class OpenObject {
 public:
  explicit OpenObject(int depth) : indent_(static_cast<std::size_t>(depth * indent), ' ') {}

  // A field with a small value, on a line of its own.
  bool put(const char* name, const Json& value) {
    return put_name(name) && put_data(line_of(value));
  }
  // A field whose value the caller puts next.
  bool put_name(const char* name) {
    const char* const end = first_ ? "{\n" : ",\n";
    first_ = false;
    return put_data(end + indent_ + "\"" + name + "\": ");
  }
  // A field that is an array of a list's objects, each on a line of its own.
  template <class T, class Make>
  bool put_list(const char* name, const CObList* list, Make make) {
    if (!put_name(name) || !put_data("[")) return false;
    const char* separator = "\n";
    for (POSITION at = list == nullptr ? nullptr : list->GetHeadPosition(); at != nullptr;) {
      const auto* const object = static_cast<T*>(list->GetNext(at));
      if (object == nullptr) continue;
      if (!put_data(separator + indent_ + "  " + line_of(make(*object)))) return false;
      separator = ",\n";
    }
    return put_data(*separator == ',' ? "\n" + indent_ + "]" : "]");
  }
  bool close() { return put_data("\n" + indent_.substr(indent) + "}"); }

 private:
  std::string indent_;
  bool first_ = true;
};

Json box_json(const embedded::ShownBox& box) {
  return {{"kind", embedded::name_of(box.kind)},
          {"id", box.id},
          {"text", box.text},
          {"answer", embedded::name_of(box.answer)}};
}

bool put_pq(const CGenericEdl& edl) {
  PQ_DETAILS details;
  edl.get_pq_details(&details);
  const Json head = pq_json(details);
  OpenObject pq(2);
  for (const auto& [name, value] : head.items()) {
    if (!pq.put(name.c_str(), value)) return false;
  }
  return pq.put_list<CGenericPQEntry>("entries", edl.get_pq_list(), pq_entry_json) && pq.close();
}

bool put_media(const std::vector<MediaRow>& media) {
  const char* separator = "[\n    ";
  for (const MediaRow& row : media) {
    const Json json = {{"path", row.path}, {"found", row.found}, {"reason", row.reason}};
    if (!put_data(separator + line_of(json))) return false;
    separator = ",\n    ";
  }
  return put_data(*separator == ',' ? "\n  ]" : "[]");
}

bool put_boxes(const embedded::EmbeddedBoxes& boxes) {
  const char* separator = "[\n    ";
  for (const embedded::ShownBox& box : boxes.shown()) {
    if (!put_data(separator + line_of(box_json(box)))) return false;
    separator = ",\n    ";
  }
  return put_data(*separator == ',' ? "\n  ]" : "[]");
}

bool put_head(OpenObject& object, const ImportRun& run) {
  EDL_DETAILS details;
  run.edl->get_edl_details(&details);
  UPDATE_SETTINGS_DETAILS updates;
  const FileFacts facts = run.format->facts(*run.edl);
  run.edl->get_update_settings_details(&updates);
  return object.put("schema", schema) && object.put("format", run.format->name) &&
         object.put("result", run.result) &&
         object.put("sample_rate", samples_per_second(details.sample_rate_index)) &&
         object.put("frame_rate", details.frame_rate) &&
         object.put("highest_stream", details.highest_stream) &&
         object.put("made_by", facts.maker) && object.put("compositions", facts.compositions) &&
         object.put("composition", facts.composition) &&
         object.put("rates_changed", {{"sample_rate", updates.sample_rate_changed != 0},
                                      {"frame_rate", updates.frame_rate_changed != 0}});
}

}  // namespace

bool put_list_json(const ImportRun& run, const std::vector<MediaRow>& media,
                   const embedded::EmbeddedBoxes& boxes) {
  CGenericEdl& edl = *run.edl;
  OpenObject object(1);
  return put_head(object, run) &&
         object.put_list<CGenericEdlEntry>("entries", edl.get_generic_entry_list(), entry_json) &&
         object.put_list<CGenericReel>("reels", edl.get_reel_list(), reel_json) &&
         object.put_name("pq") && put_pq(edl) &&
         object.put_list<CGenericLocatorEntry>("locators", edl.get_locator_list(), locator_json) &&
         object.put_list<CGenericAutomationChunk>("automation", edl.get_automation_list(),
                                                  automation_json) &&
         object.put_list<CGenericEdlVideoEntry>("video", edl.get_video_list(), video_entry_json) &&
         object.put_name("media") && put_media(media) && object.put_name("boxes") &&
         put_boxes(boxes) && object.close() && put_data("\n") && flush_data();
}

}  // namespace cli
