// The progress window of an import that copies essence out of an AAF file, and of an
// export that writes it.
//
// All work of a job is done on the caller's thread, so the window lives only by
// set_position, which handles its waiting events.
#pragma once

#include <cstdint>
#include <memory>

#include "host/dialogs.h"

class CEssenceStorageProgressDlg {
 public:
  // `importing` nonzero for an import. `total` is the whole job in KiB. `abort_flag` is
  // the caller's; it becomes 1 when the person ends the job.
  CEssenceStorageProgressDlg(std::uint32_t importing, std::uint32_t track_count,
                             std::uint32_t total, std::int32_t* abort_flag);
  ~CEssenceStorageProgressDlg();
  CEssenceStorageProgressDlg(const CEssenceStorageProgressDlg&) = delete;
  CEssenceStorageProgressDlg& operator=(const CEssenceStorageProgressDlg&) = delete;

  // `track` from 0.
  void set_track_text(std::uint32_t track);
  // KiB. At the total the bar is full, and stays so.
  void set_position(std::uint32_t position);
  // Closes the window. Nothing may follow.
  void close();

 private:
  void handle(ProgressWindow::Event event);
  void on_cancel();

  std::uint32_t m_importing;
  std::uint32_t m_track_count;
  std::uint32_t m_total;
  std::int32_t* m_abort_flag;
  std::uint32_t m_last_position = 0xFFFFFFFF;
  std::int32_t m_finished = 0;
  std::unique_ptr<ProgressWindow> m_window;
};
