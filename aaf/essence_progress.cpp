#include "aaf/essence_progress.h"

#include <string>

#include "host/application.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/text_format.h"

CEssenceStorageProgressDlg::CEssenceStorageProgressDlg(std::uint32_t importing,
                                                       std::uint32_t track_count,
                                                       std::uint32_t total,
                                                       std::int32_t* abort_flag)
    : m_importing(importing),
      m_track_count(track_count),
      m_total(total),
      m_abort_flag(abort_flag),
      m_window(host().dialogs().open_progress(total)) {
  if (m_window == nullptr) return;
  const wide_char* caption = u"Importing embedded audio...";
  if (m_importing == 0) {
    caption = host().application().get_aaf_embed_audio() != 0 ? u"Exporting embedded audio..."
                                                              : u"Exporting audio...";
  }
  m_window->set_caption(caption);
}

CEssenceStorageProgressDlg::~CEssenceStorageProgressDlg() {
  close();
}

void CEssenceStorageProgressDlg::set_track_text(std::uint32_t track) {
  if (m_window == nullptr) return;
  const std::u16string text = u"Processing track " + decimal(std::int64_t{track} + 1) + u" of " +
                              decimal(m_track_count) + u"...";
  m_window->set_text(text.c_str());
}

void CEssenceStorageProgressDlg::set_position(std::uint32_t position) {
  if (m_window == nullptr) return;
  const bool becomes_finished = position == m_total && m_finished == 0;
  if (becomes_finished) {
    m_window->set_position(position);
    m_finished = 1;
  }
  if (position != m_last_position) {
    m_last_position = position;
    if (m_finished == 0) m_window->set_position(position);
  }
  for (auto event = ProgressWindow::Event::none; m_window->pump(event);)
    handle(event);
}

void CEssenceStorageProgressDlg::handle(ProgressWindow::Event event) {
  if (event == ProgressWindow::Event::cancel) on_cancel();
  if (event == ProgressWindow::Event::ok) *m_abort_flag = 1;
}

void CEssenceStorageProgressDlg::on_cancel() {
  if (m_finished == 0) {
    const wide_char* const question = m_importing != 0
                                          ? u"Are you sure you wish to abort importing this audio?"
                                          : u"Are you sure you wish to abort exporting this audio?";
    const int answer =
        host().message_boxes().message(question, BoxIcon::question, BoxButtons::yes_no_default_no);
    if (answer != box_answer_yes) return;
  }
  *m_abort_flag = 1;
}

void CEssenceStorageProgressDlg::close() {
  if (m_window == nullptr) return;
  m_window->close();
  m_window.reset();
}
