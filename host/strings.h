// Texts by id: the wording of everything that a person is shown.
#pragma once

#include "host/api.h"
#include "host/text.h"

class EDL_API StringService {
 public:
  virtual ~StringService() = default;
  // The text of an id, empty for an unknown one. Stands until the next load.
  [[nodiscard]] virtual const wide_char* load(unsigned id) = 0;
  // The same with one buffer a slot (0 or 1), so that two texts stand at once.
  [[nodiscard]] virtual const wide_char* load_into_slot(unsigned id, int slot) = 0;
};
