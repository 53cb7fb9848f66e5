#include "tests/support/scripted_host.h"

namespace support {

ScriptedHost::ScriptedHost() : before_(&host()) {
  set_host(this);
}

ScriptedHost::~ScriptedHost() {
  set_host(before_);
}

bool ScriptedHost::link_resources() {
  ++links;
  return link_result;
}

}  // namespace support
