#include "native/marlo2_edl.h"

#include "core/generic_edl_entry.h"

CMarlo2Edl::CMarlo2Edl(CGenericEdl* parent, int interactive) : CGenericEdl(parent, interactive) {
  for (auto& list : m_channel_lists)
    list = std::make_unique<CObList>(10);
}

CMarlo2Edl::~CMarlo2Edl() {
  if (m_reels != nullptr) delete_all(*m_reels);
}

int CMarlo2Edl::supports_reel_objects(const wide_char* /*name*/) const {
  return 0;
}

void CMarlo2Edl::clear_channels() {
  for (auto& list : m_channel_lists)
    list->RemoveAll();
  m_channel_counts = {};
}

void CMarlo2Edl::delete_channels() {
  for (auto& list : m_channel_lists)
    delete_all(*list);
}
