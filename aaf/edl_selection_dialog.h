// Asks which of an AAF file's compositions is to be imported.
#pragma once

#include <cstdint>

#include "host/framework/collections.h"

class CAAFEDLSelectionDialog {
 public:
  // The names are not owned.
  explicit CAAFEDLSelectionDialog(const CStringArray* names) : m_names(names) {}

  // False when the person cancelled. OK is only answered with a row chosen.
  [[nodiscard]] bool do_modal();
  // The row from 0.
  [[nodiscard]] std::int32_t selection() const { return m_selection; }

 private:
  const CStringArray* m_names;
  std::int32_t m_selection = 0;
};
