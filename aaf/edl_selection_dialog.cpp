#include "aaf/edl_selection_dialog.h"

#include <span>

#include "host/dialogs.h"
#include "host/host.h"

bool CAAFEDLSelectionDialog::do_modal() {
  const ChoiceDialog dialog{
      .caption = u"AAF Multiple EDLs",
      .prompt = u"This AAF contains multiple EDLs.\n\nSelect the EDL you wish to import.",
      .nothing_chosen = u"Select an EDL to import from the list of EDL names",
      .rows = std::span(m_names->begin(), m_names->end()),
  };
  const int row = host().dialogs().choose(dialog);
  if (row < 0) return false;
  m_selection = row;
  return true;
}
