// The numbers of audio sources in an interchange job. Several exports of one job must
// agree on which source has which number; this list remembers it between them.
//
// There is one list at a time, for the whole process and without locks. The host makes
// it, or the first export of an interchange job does; the next export of an audio
// decision list uses it up and destroys it.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include "host/framework/ob_list.h"
#include "host/framework/object.h"

class CAudCnt;

// One source of the job.
class CInterchangerSource : public CObject {
 public:
  // Not owned; compared by address. Sources that the host knows nothing of are null,
  // and so all the same.
  CAudCnt* audio_content = nullptr;
  // From 0.
  std::int16_t index = 0;
  // Nonzero until an export has given the source a number.
  std::int32_t is_new = 0;
};

class EDL_API CInterchangerSourceList : public CObject {
 public:
  // Becomes the list of the process; one that was it before is left alone.
  CInterchangerSourceList();
  // No list is that of the process from now on.
  ~CInterchangerSourceList() override;
  CInterchangerSourceList(const CInterchangerSourceList&) = delete;
  CInterchangerSourceList& operator=(const CInterchangerSourceList&) = delete;

  // Adds a source, also one that is on the list already.
  void AddSource(CAudCnt* audio_content, short index, int is_new);
  // The index of the first record of a source, -1 when there is none.
  [[nodiscard]] short GetSourceIndex(CAudCnt* audio_content);
  // Gives the first record of a source to another source. Nothing for an unknown one.
  void ChangeSource(CAudCnt* from, CAudCnt* to);

  // Whether the first record of a source is marked new; 0 when there is none.
  [[nodiscard]] int is_new(CAudCnt* audio_content) const;
  // Gives the first record of a source an index that it keeps, and tells the host's
  // audio engine. Nothing for an unknown source.
  void reindex(CAudCnt* audio_content, short index);

 private:
  // By source, and then in the order of the list.
  using Places = std::map<std::pair<const CAudCnt*, std::intptr_t>, CInterchangerSource*>;

  [[nodiscard]] Places::const_iterator find(const CAudCnt* audio_content) const;

  // Owned CInterchangerSource objects.
  CObList sources_{10};
  Places places_;
};

// The list of the process; null when there is none.
EDL_API CInterchangerSourceList* GetInterchangerSourceList();
