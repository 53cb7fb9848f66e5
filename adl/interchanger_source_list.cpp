#include "adl/interchanger_source_list.h"

#include <memory>

#include "host/audio.h"
#include "host/host.h"

namespace {

CInterchangerSourceList* current_list = nullptr;

}  // namespace

CInterchangerSourceList* GetInterchangerSourceList() {
  return current_list;
}

CInterchangerSourceList::CInterchangerSourceList() {
  current_list = this;
}

CInterchangerSourceList::~CInterchangerSourceList() {
  delete_all(sources_);
  current_list = nullptr;
}

void CInterchangerSourceList::AddSource(CAudCnt* audio_content, short index, int is_new) {
  auto source = std::make_unique<CInterchangerSource>();
  source->audio_content = audio_content;
  source->index = index;
  source->is_new = is_new;
  sources_.AddTail(source.get());
  places_.emplace(std::pair(audio_content, sources_.GetCount()), source.release());
}

CInterchangerSourceList::Places::const_iterator CInterchangerSourceList::find(
    const CAudCnt* audio_content) const {
  const auto at = places_.lower_bound({audio_content, 0});
  return at != places_.end() && at->first.first == audio_content ? at : places_.end();
}

short CInterchangerSourceList::GetSourceIndex(CAudCnt* audio_content) {
  const auto at = find(audio_content);
  return at == places_.end() ? short{-1} : at->second->index;
}

void CInterchangerSourceList::ChangeSource(CAudCnt* from, CAudCnt* to) {
  const auto at = find(from);
  if (at == places_.end()) return;
  at->second->audio_content = to;
  auto moved = places_.extract(at);
  moved.key().first = to;
  places_.insert(std::move(moved));
}

int CInterchangerSourceList::is_new(CAudCnt* audio_content) const {
  const auto at = find(audio_content);
  return at == places_.end() ? 0 : at->second->is_new;
}

void CInterchangerSourceList::reindex(CAudCnt* audio_content, short index) {
  const auto at = find(audio_content);
  if (at == places_.end()) return;
  host().audio().reindex_omf_source(at->second->index, index);
  at->second->index = index;
  at->second->is_new = 0;
}
