#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "core/frm_wantto_save.h"
#include "core/plain_windows.h"
#include "desktop/form_dialog.h"
#include "dmx/velgrove_comm.h"
#include "playback/frm_confirm_paste.h"

namespace velgrove {

/// The first window. A light travels along its foot while the desk starts.
class SplashWindow : public FormDialog {
  Q_OBJECT

 public:
  SplashWindow(QWidget* above, Face& face, frmSplash& form);

 protected:
  void appear() override;
  void paintEvent(QPaintEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  frmSplash& m_form;
  QLabel m_status;
  QTimer m_travel;
  int m_step = 0;
  bool m_told = false;
};

/// The interface's window: how far the link has come up, and what is wrong with it.
class StatusWindow : public FormDialog {
  Q_OBJECT

 public:
  StatusWindow(QWidget* above, Face& face, VelgroveComm& comm);

 protected:
  void appear() override;

 private:
  QLabel m_title, m_version, m_condition;
  QProgressBar m_progress;
};

/// The question whether to save, frmWanttoSave.
class SaveQuestion : public FormDialog {
  Q_OBJECT

 public:
  SaveQuestion(QWidget* above, Face& face, frmWanttoSave& form);

 private:
  QLabel m_words;
  QPushButton m_save, m_dontSave, m_cancel;
};

/// A warning before a paste, frmConfirmPaste.
class PasteQuestion : public FormDialog {
  Q_OBJECT

 public:
  PasteQuestion(QWidget* above, Face& face, frmConfirmPaste& form);

 private:
  QLabel m_question, m_warning;
  QPushButton m_yes, m_no;
};

class AboutWindow : public FormDialog {
  Q_OBJECT

 public:
  AboutWindow(QWidget* above, Face& face, frmAbout& form);

 private:
  QLabel m_words;
  QPushButton m_ok;
};

}  // namespace velgrove
