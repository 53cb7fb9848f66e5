// One stream of an edit list as the sequence of a track: clips, fillers between them, and
// transitions where two sound at once or one fades.
#pragma once

#include <cstdint>

#include "aaf/export_definitions.h"
#include "aaf/export_timeline.h"

namespace aaf {

// What the host wants of levels.
struct ExportLevels {
  bool fixed_gain = false;
  bool gain_automation = false;
  bool pan_automation = false;
};

// What all tracks of a composition have in common. Times are samples.
struct ExportTracks {
  ObjectFactory& factory;
  ExportDefinitions& definitions;
  const ExportTimeline& timeline;
  ExportLevels levels;
  std::int64_t sample_rate = 0;
  // Where the composition starts.
  std::int64_t start = 0;
};

// Over a group of a definition, which it is handed as it is.
[[nodiscard]] AafRef<IAAFOperationGroup> make_group(ObjectFactory& factory,
                                                    IAAFOperationDef* definition,
                                                    std::int64_t length);
// A varying value with these control points, as a parameter of a group.
[[nodiscard]] bool add_varying(ObjectFactory& factory, ExportDefinitions& definitions,
                               IAAFOperationGroup& group, Parameter parameter,
                               const Points& points);

class TrackExport {
 public:
  // `sequence` is in the file already.
  TrackExport(const ExportTracks& tracks, std::uint32_t stream, IAAFSequence* sequence)
      : m_tracks(tracks), m_stream(stream), m_sequence(sequence), m_cursor(tracks.start) {}

  [[nodiscard]] bool export_track();
  // Where the track ends: its cursor behind the last event.
  [[nodiscard]] std::int64_t end() const { return m_cursor; }

 private:
  // Where two events that overlap begin and end to be heard together.
  struct Crossfade {
    std::int64_t length;
    // What the outgoing clip needs behind its end, and the incoming one before its start.
    std::int64_t post;
    std::int64_t pre;
  };

  static Crossfade crossfade_of(const CGenericEDLFileEntry& a, const CGenericEDLFileEntry& b);

  [[nodiscard]] bool export_event(const CGenericEDLFileEntry& event,
                                  const CGenericEDLFileEntry* next);
  [[nodiscard]] bool lead_in(const CGenericEDLFileEntry& event);
  [[nodiscard]] bool fade_out(const CGenericEDLFileEntry& event, bool is_last);
  [[nodiscard]] bool append(IUnknown* component);
  [[nodiscard]] bool append_filler(std::int64_t length);
  [[nodiscard]] bool append_clip(const CGenericEDLFileEntry& event, std::int64_t post);
  [[nodiscard]] bool append_transition(const CGenericEDLFileEntry* a, const CGenericEDLFileEntry* b,
                                       std::int64_t length);
  [[nodiscard]] bool add_levels(IAAFOperationGroup& group, const CGenericEDLFileEntry* a,
                                const CGenericEDLFileEntry* b, std::int64_t length);
  [[nodiscard]] bool build_dissolve_levels(IAAFOperationGroup& group, const CGenericEDLFileEntry& a,
                                           const CGenericEDLFileEntry& b, std::int64_t length);
  [[nodiscard]] AafRef<IAAFSourceClip> make_source_clip(const CGenericEDLFileEntry& event,
                                                        std::int64_t post) const;
  // A group round `input`.
  [[nodiscard]] AafRef<IAAFOperationGroup> fixed_gain(const CGenericEDLFileEntry& event,
                                                      std::int64_t length, IUnknown* input);
  [[nodiscard]] AafRef<IAAFOperationGroup> varying_gain(const CGenericEDLFileEntry& event,
                                                        const AutomationPoints& automation,
                                                        std::int64_t length, IUnknown* input);

  const ExportTracks& m_tracks;
  std::uint32_t m_stream;
  IAAFSequence* m_sequence;
  // How far the track is filled.
  std::int64_t m_cursor;
  // Of the clip in hand: whether a crossfade leads into it, and what it so needs before
  // its start.
  bool m_joined = false;
  std::int64_t m_pre = 0;
};

}  // namespace aaf
