#include "aafobj/model/auid.h"

#include <cstdio>

namespace aafobj {

std::string to_text(const aafUID_t& id) {
  std::array<char, 37> text{};
  const auto& d = id.Data4;
  std::snprintf(text.data(), text.size(), "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                id.Data1, id.Data2, id.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
  return text.data();
}

}  // namespace aafobj
