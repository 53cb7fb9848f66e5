#include "aaf/aaf_ids.h"

bool uids_match(const aafUID_t& a, const aafUID_t& b) {
  return a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3;
}

bool uids_match(const aafMobID_t& a, const aafMobID_t& b) {
  return uids_match(a.material, b.material);
}
