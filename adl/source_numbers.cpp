#include "adl/source_numbers.h"

#include "adl/interchanger_source_list.h"

namespace adl {

SourceNumbers::SourceNumbers(bool interchange)
    : m_list(GetInterchangerSourceList()), m_fill(interchange && m_list == nullptr) {
  if (m_fill) m_list = new CInterchangerSourceList;
}

std::uint16_t SourceNumbers::next(CAudCnt* audio_content) {
  const auto index = static_cast<short>(m_count);
  if (m_fill) {
    m_list->AddSource(audio_content, index, 0);
  } else if (m_list != nullptr && m_list->GetSourceIndex(audio_content) >= 0) {
    if (m_list->is_new(audio_content) == 0) {
      m_count = static_cast<std::uint16_t>(m_list->GetSourceIndex(audio_content) + 1);
      return m_count;
    }
    m_list->reindex(audio_content, index);
  }
  return ++m_count;
}

void SourceNumbers::finish() {
  if (m_fill) return;
  delete m_list;
  m_list = nullptr;
}

}  // namespace adl
