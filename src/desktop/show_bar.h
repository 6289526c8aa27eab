#pragma once

#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <string_view>
#include <vector>

#include "desktop/cue_panel.h"
#include "desktop/tools.h"

namespace velgrove {

/// The band at the top: files and windows, blackout, the cue panel, stepping, Stop and Go. When it gets
/// tight, stepping and files go into an overflow menu; Go, Stop and the cue panel never do.
class ShowBar : public QWidget {
  Q_OBJECT

 public:
  ShowBar(LightingDesk& desk, Tools& tools, Bindings& bindings);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void addTool(std::string_view id, bool caption);
  void addLine();
  void addMove(QPushButton& button, const char* id, const char* role, Button QueueList::*state,
               LightingDesk& desk, Bindings& bindings);
  void dressIcon(QPushButton& button) const;
  void fit();
  void size();

  Tools& m_tools;
  QHBoxLayout* m_row;
  CuePanel* m_panel;
  QPushButton m_stop;
  QPushButton m_go;
  QToolButton m_overflow;
  std::vector<QToolButton*> m_files;
  std::vector<QToolButton*> m_steps;
  QToolButton* m_blackout = nullptr;
};

}  // namespace velgrove
